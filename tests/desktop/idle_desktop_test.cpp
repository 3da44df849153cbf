#include "tests/desktop/menu_fixture.h"
#include "tests/desktop/sway.h"

#include <QFileInfo>
#include <QProcessEnvironment>
#include <QStandardPaths>

#include <gtest/gtest.h>

#include <csignal>
#include <memory>

namespace kestro {
namespace {

/// Kestro on an X server, as usual where a Wayland session has one, beside the compositor's idle daemon.
struct IdleOnWayland : MenuFixture {
    void SetUp() override {
        const bool hasDaemon = !QStandardPaths::findExecutable(QStringLiteral("swayidle")).isEmpty();
        const QString missing = hasDaemon ? Sway::missing() : QStringLiteral("swayidle");
        if (!missing.isEmpty()) {
            GTEST_SKIP() << missing.toStdString() << " is not installed";
        }
    }

    void launchBeside(const Sway& sway) {
        ASSERT_EQ(sway.failure().toStdString(), "");
        launch(sway.clientVariables().toStringList() + QStringList{QStringLiteral("XDG_CURRENT_DESKTOP=sway")});
    }

    /// Starts a daemon that creates the file as soon as the session has been idle for a time.
    void startIdleDaemon(const Sway& sway, int seconds, const QString& file) {
        session.start(
            QStringLiteral("env"),
            sway.clientVariables().toStringList() +
                QStringList{QStringLiteral("swayidle"), QStringLiteral("-C"), QStringLiteral("/dev/null"),
                            QStringLiteral("timeout"), QString::number(seconds), QStringLiteral("touch ") + file});
    }

    /// Whether the menu's heading starts like that.
    bool isReported(const QString& heading) const {
        return waitUntil([&] {
            const auto menu = client.menu(client.waitForItem(keepAwakeItem));
            return !menu.children.empty() && menu.children.front().label().startsWith(heading);
        });
    }

    static bool appearsAt(const QString& file) {
        return waitUntil([&] { return QFileInfo::exists(file); });
    }

    /// Whether the session does not become idle after one second, while another compositor's, which has a later
    /// start and a longer time, does.
    bool isKeptAwake(const Sway& sway) {
        const Sway other(DesktopSession::screenSize, inherited());
        startIdleDaemon(sway, 1, idle);
        const QString otherIdle = session.path(QStringLiteral("other-idle"));
        startIdleDaemon(other, 3, otherIdle);
        return appearsAt(otherIdle) && !QFileInfo::exists(idle);
    }

    static QProcessEnvironment inherited() {
        QProcessEnvironment environment;
        for (const char* name : {"PATH", "KESTRO_TEST_RUN"}) {
            environment.insert(QString::fromLatin1(name), qEnvironmentVariable(name));
        }
        return environment;
    }

    const QString held = QStringLiteral("Keep-Awake: Active");
    const QString idle = session.path(QStringLiteral("idle"));
};

TEST_F(IdleOnWayland, TheSessionDoesNotBecomeIdleUntilTheRelease) {
    const Sway sway(DesktopSession::screenSize, inherited());
    launchBeside(sway);
    choose(activate);
    ASSERT_TRUE(isReported(held));

    EXPECT_TRUE(isKeptAwake(sway));
    choose(deactivate);

    EXPECT_TRUE(appearsAt(idle));
}

TEST_F(IdleOnWayland, TheSessionDoesNotBecomeIdleUntilAKill) {
    const Sway sway(DesktopSession::screenSize, inherited());
    launchBeside(sway);
    choose(activate);
    ASSERT_TRUE(isReported(held));

    EXPECT_TRUE(isKeptAwake(sway));
    expectEndBy(SIGKILL);

    EXPECT_TRUE(appearsAt(idle));
}

TEST_F(IdleOnWayland, SystemOnlyLetsTheSessionBecomeIdle) {
    const Sway sway(DesktopSession::screenSize, inherited());
    launchBeside(sway);
    choose(activate);
    ASSERT_TRUE(isReported(held));
    EXPECT_TRUE(isKeptAwake(sway));

    choose(systemOnly, keepAwakeItem);

    EXPECT_TRUE(appearsAt(idle));
}

TEST_F(IdleOnWayland, TheLockIsLostWithTheCompositor) {
    auto sway = std::make_unique<Sway>(DesktopSession::screenSize, inherited());
    launchBeside(*sway);
    choose(activate);
    ASSERT_TRUE(isReported(held));

    sway.reset();

    EXPECT_TRUE(isReported(QStringLiteral("Keep-Awake: Not Held")));
}

}  // namespace
}  // namespace kestro
