#include "tests/desktop/daemons_fixture.h"
#include "tests/platform/desktop/lock_pipe.h"
#include "tests/support/fake_service.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QFileInfo>
#include <QProcess>

#include <gtest/gtest.h>
#include <unistd.h>
#include <xcb/screensaver.h>
#include <xcb/xcb.h>

#include <csignal>
#include <cstdint>
#include <cstdlib>

namespace kestro {
namespace {

/// The screen saver of an X server, seen through a separate connection.
class ServerScreenSaver {
public:
    explicit ServerScreenSaver(const QString& display) : display_(xcb_connect(display.toLatin1(), nullptr)) {}
    ~ServerScreenSaver() { xcb_disconnect(display_); }
    ServerScreenSaver(const ServerScreenSaver&) = delete;
    ServerScreenSaver& operator=(const ServerScreenSaver&) = delete;

    void setTimeout(std::int16_t seconds) {
        xcb_set_screen_saver(display_, seconds, 0, XCB_BLANKING_PREFERRED, XCB_EXPOSURES_ALLOWED);
        xcb_flush(display_);
    }
    void wake() {
        xcb_force_screen_saver(display_, XCB_SCREEN_SAVER_RESET);
        xcb_flush(display_);
    }
    bool isOn() const { return info().state == XCB_SCREENSAVER_STATE_ON; }
    std::uint32_t idleMilliseconds() const { return info().ms_since_user_input; }

private:
    xcb_screensaver_query_info_reply_t info() const {
        const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(display_)).data->root;
        auto* const reply =
            xcb_screensaver_query_info_reply(display_, xcb_screensaver_query_info(display_, root), nullptr);
        const auto info = reply != nullptr ? *reply : xcb_screensaver_query_info_reply_t{};
        std::free(reply);
        return info;
    }

    xcb_connection_t* display_;
};

TEST_F(DaemonsOnTheDesktop, TheXServerDoesNotBlankTheScreenWhileKeepAwakeIsActive) {
    ServerScreenSaver saver(session.display());
    launch();
    choose(activate);
    ASSERT_TRUE(offers(deactivate));
    saver.wake();
    saver.setTimeout(1);

    ASSERT_TRUE(waitUntil([&] { return saver.idleMilliseconds() > 3000; }));
    EXPECT_FALSE(saver.isOn());
    choose(deactivate);
    EXPECT_TRUE(waitUntil([&] { return saver.isOn(); }));
}

TEST_F(DaemonsOnTheDesktop, TheXServerBlanksTheScreenAgainAfterAKill) {
    ServerScreenSaver saver(session.display());
    launch();
    choose(activate);
    ASSERT_TRUE(offers(deactivate));
    expectEndBy(SIGKILL);

    saver.setTimeout(1);

    EXPECT_TRUE(waitUntil([&] { return saver.isOn(); }));
}

struct XfceOnTheDesktop : DaemonsOnTheDesktop {
    /// Starts the power manager with a lock of the test's: version 4.18 crashes after its last lock has ended on a
    /// display without DPMS.
    bool startPowerManager() {
        session.start(QStringLiteral("/usr/libexec/upowerd"), {});
        session.start(QStringLiteral("xfce4-power-manager"), {QStringLiteral("--no-daemon")});
        return isOwned(Bus::session, name) && waitUntil([&] {
                   return call("Inhibit", {QStringLiteral("Test"), QStringLiteral("test")}).isValid();
               });
    }

    bool lists(const QStringList& expected) {
        return waitUntil([&] {
            QStringList names = call("GetInhibitors", {}).toStringList();
            names.sort();
            return names == expected;
        });
    }

    QVariant call(const char* method, const QVariantList& arguments) {
        return ask(Bus::session, name, QStringLiteral("/org/freedesktop/PowerManagement/Inhibit"),
                   name + QStringLiteral(".Inhibit"), QString::fromLatin1(method), arguments);
    }

    const QString name = QStringLiteral("org.freedesktop.PowerManagement");
    const QString ours = QStringLiteral("Kestro");
    const QString others = QStringLiteral("Test");
};

TEST_F(XfceOnTheDesktop, ThePowerManagerIsInhibitedForBothTargets) {
    NEEDS_PROGRAM("/usr/bin/xfce4-power-manager");
    NEEDS_PROGRAM("/usr/libexec/upowerd");
    ASSERT_TRUE(startPowerManager());
    launch();

    choose(activate);
    EXPECT_TRUE(lists({ours, others}));
    choose(deactivate);
    EXPECT_TRUE(lists({others}));
    choose(systemOnly, keepAwakeItem);
    choose(activate);
    EXPECT_TRUE(lists({ours, others}));
    expectEndBy(SIGKILL);

    EXPECT_TRUE(lists({others}));
}

TEST_F(DaemonsOnTheDesktop, ThePortalDoesNotDisplaceAWorkingLock) {
    NEEDS_PROGRAM("/usr/libexec/xdg-desktop-portal");
    NEEDS_PROGRAM("/usr/libexec/xdg-desktop-portal-gtk");
    session.start(QStringLiteral("/usr/libexec/xdg-desktop-portal-gtk"), {});
    ASSERT_TRUE(isOwned(Bus::session, QStringLiteral("org.freedesktop.impl.portal.desktop.gtk")));
    session.start(QStringLiteral("/usr/libexec/xdg-desktop-portal"), {});
    ASSERT_TRUE(isOwned(Bus::session, QStringLiteral("org.freedesktop.portal.Desktop")));
    test::LockPipe pipe;
    const test::FakeService logind(session.connect(Bus::system), QStringLiteral("org.freedesktop.login1"),
                                   {{QStringLiteral("Inhibit"), [&pipe](const QDBusMessage& call) {
                                         return call.createReply(QVariant::fromValue(pipe.writeEnd()));
                                     }}});
    launch();

    choose(activate);
    EXPECT_TRUE(offers(deactivate));
    pipe.closeWriteEnd();
    EXPECT_TRUE(pipe.isHeldBySomebody());
    EXPECT_TRUE(waitUntil([&] {
        return client.toolTip(client.waitForItem(keepAwakeItem)).contains(QStringLiteral("held by logind"));
    }));
    choose(deactivate);

    EXPECT_TRUE(waitUntil([&] { return !pipe.isHeldBySomebody(); }));
}

struct LogindOnTheDesktop : DaemonsOnTheDesktop {
    /// The locks of Kestro that logind lists, such as "idle block".
    QStringList locks() {
        const auto list =
            ask(Bus::system, QStringLiteral("org.freedesktop.login1"), QStringLiteral("/org/freedesktop/login1"),
                QStringLiteral("org.freedesktop.login1.Manager"), QStringLiteral("ListInhibitors"))
                .value<QDBusArgument>();
        QStringList found;
        if (list.currentSignature() != QLatin1String("a(ssssuu)")) {
            return {QStringLiteral("no list")};
        }
        list.beginArray();
        while (!list.atEnd()) {
            QString what;
            QString who;
            QString why;
            QString mode;
            uint user = 0;
            uint process = 0;
            list.beginStructure();
            list >> what >> who >> why >> mode >> user >> process;
            list.endStructure();
            if (who == QLatin1String("Kestro")) {
                found.append(what + QLatin1Char(' ') + mode);
            }
        }
        list.endArray();
        found.sort();
        return found;
    }

    bool lists(const QStringList& expected) {
        return waitUntil([&] { return locks() == expected; });
    }
};

TEST_F(LogindOnTheDesktop, HoldsTheLocksUntilTheyAreReleasedOrTheProcessIsKilled) {
    NEEDS_PROGRAM("/lib/systemd/systemd-logind");
    if (::geteuid() != 0 || QFileInfo::exists(QStringLiteral("/run/dbus/system_bus_socket"))) {
        GTEST_SKIP() << "it needs a container: as root, and beside no other logind";
    }
    session.start(QStringLiteral("/lib/systemd/systemd-logind"), {});
    ASSERT_TRUE(isOwned(Bus::system, QStringLiteral("org.freedesktop.login1")));
    launch();

    choose(activate);
    EXPECT_TRUE(lists({QStringLiteral("idle block"), QStringLiteral("sleep block")}));
    choose(systemOnly, keepAwakeItem);
    EXPECT_TRUE(lists({QStringLiteral("sleep block")}));
    choose(deactivate);
    EXPECT_TRUE(lists({}));
    choose(activate);
    EXPECT_TRUE(lists({QStringLiteral("sleep block")}));
    expectEndBy(SIGKILL);

    EXPECT_TRUE(lists({}));
}

TEST_F(DaemonsOnTheDesktop, XScreenSaverIsInhibitedUntilAKill) {
    NEEDS_PROGRAM("/usr/libexec/xscreensaver/xscreensaver-systemd");
    // It ends at once without a lock of logind.
    const test::LockPipe pipe;
    const test::FakeService logind(session.connect(Bus::system), QStringLiteral("org.freedesktop.login1"),
                                   {{QStringLiteral("Inhibit"), [&pipe](const QDBusMessage& call) {
                                         return call.createReply(QVariant::fromValue(pipe.writeEnd()));
                                     }}});
    QProcess& daemon =
        session.start(QStringLiteral("xscreensaver"), {QStringLiteral("-no-splash"), QStringLiteral("-verbose")});
    QByteArray output;
    const auto says = [&](const char* text) {
        return waitUntil([&] {
            output += daemon.readAllStandardError();
            return output.contains(text);
        });
    };
    ASSERT_TRUE(isOwned(Bus::session, QStringLiteral("org.freedesktop.ScreenSaver")));
    launch();

    choose(activate);
    EXPECT_TRUE(says("inhibited by \"Kestro\"")) << output.toStdString();
    expectEndBy(SIGKILL);

    EXPECT_TRUE(says("uninhibiting")) << output.toStdString();
}

}  // namespace
}  // namespace kestro
