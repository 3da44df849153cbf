#include "tests/desktop/shell_fixture.h"
#include "tests/support/silent_socket.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QStringList>
#include <QSysInfo>

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <string>
#include <vector>

namespace kestro {
namespace {

using StartOnTheDesktop = ShellFixture;

TEST_F(StartOnTheDesktop, SucceedsWhileThePreviousKestroIsEnding) {
    launch();

    for (int round = 0; round < 5; ++round) {
        const QProcess& previous = *kestro;
        ::kill(static_cast<pid_t>(previous.processId()), SIGTERM);
        kestro = &session.startKestro();
        const QString owner = QString::number(kestro->processId());

        EXPECT_TRUE(session.waitFor([&] {
            const auto strip = session.strip();
            return strip && session.windowProperty(*strip, QStringLiteral("_NET_WM_PID")).contains(owner);
        })) << round;

        EXPECT_EQ(kestro->state(), QProcess::Running) << round;
        EXPECT_TRUE(waitUntil([&] { return previous.state() == QProcess::NotRunning; })) << round;
    }
}

TEST_F(StartOnTheDesktop, LeavesOneKestroWhenRepeatedAtOnce) {
    std::vector<const QProcess*> started;
    for (int count = 0; count < 10; ++count) {
        started.push_back(&session.startKestro());
    }
    const auto running = [&] {
        return std::ranges::count_if(started,
                                     [](const QProcess* one) { return one->state() == QProcess::Running; });
    };

    EXPECT_TRUE(waitUntil([&] { return running() == 1; }));

    EXPECT_TRUE(appears(dashboard));
    EXPECT_EQ(running(), 1);
    for (const QProcess* one : started) {
        EXPECT_TRUE(one->state() == QProcess::Running || one->exitCode() == 0);
    }
}

TEST_F(StartOnTheDesktop, DoesNotWaitForAMachinesBusThatNeverAnswers) {
    const QString socket = session.path(QStringLiteral("silent"));
    const SilentSocket silent(socket.toStdString());

    launch({QStringLiteral("DBUS_SYSTEM_BUS_ADDRESS=unix:path=") + socket});

    notify(QStringLiteral("showDashboard"));
    EXPECT_TRUE(appears(dashboard));
}

TEST_F(StartOnTheDesktop, ConnectsToAMachinesBusThatAnswersLater) {
    const QDBusConnection bus = session.connect(DesktopSession::Bus::system);
    session.pauseBus(DesktopSession::Bus::system);

    launch();
    session.resumeBus(DesktopSession::Bus::system);

    EXPECT_TRUE(session.waitFor([&] {
        const QStringList clients = bus.interface()->registeredServiceNames();
        return std::ranges::any_of(clients, [&](const QString& client) {
            return bus.interface()->servicePid(client) == static_cast<uint>(kestro->processId());
        });
    }));
}

TEST_F(StartOnTheDesktop, ManagesWithoutASessionBusThatNeverAnswers) {
    const QString socket = session.path(QStringLiteral("silent"));
    const SilentSocket silent(socket.toStdString());

    launch({QStringLiteral("DBUS_SESSION_BUS_ADDRESS=unix:path=") + socket});

    command("dashboard");
    EXPECT_TRUE(appears(dashboard));
}

TEST_F(StartOnTheDesktop, DoesNotRegisterWithTheSessionManager) {
    const QString socket = session.path(QStringLiteral("manager"));
    const SilentSocket manager(socket.toStdString());

    launch({QStringLiteral("SESSION_MANAGER=local/%1:%2").arg(QSysInfo::machineHostName(), socket)});

    EXPECT_FALSE(manager.accept(0).isOpen());
}

TEST_F(StartOnTheDesktop, SaysInOneLineThatThereIsNoDisplay) {
    for (const char* display : {"", ":60999"}) {
        QProcess& started = session.startKestro({QStringLiteral("DISPLAY=") + QString::fromUtf8(display)});

        ASSERT_TRUE(waitUntil([&] { return started.state() == QProcess::NotRunning; }));

        EXPECT_EQ(started.exitStatus(), QProcess::NormalExit);
        EXPECT_EQ(started.exitCode(), 1);
        const QByteArray said = started.readAll();
        EXPECT_EQ(said.count('\n'), 1) << said.toStdString();
        EXPECT_TRUE(said.contains(QByteArray("DISPLAY is \"") + display + '"')) << said.toStdString();
    }
}

TEST_F(StartOnTheDesktop, IsFollowedBySilence) {
#ifdef KESTRO_SANITIZED
    GTEST_SKIP() << "a sanitizer may report";
#endif
    // The toolkit has much to say about plug-ins, and the font library about its missing configuration.
    launch({QStringLiteral("QT_DEBUG_PLUGINS=1"), QStringLiteral("QT_LOGGING_RULES=*=true"),
            QStringLiteral("FONTCONFIG_FILE=/nonexistent")});
    command("dashboard");
    EXPECT_TRUE(appears(dashboard));
    command("settings");
    EXPECT_TRUE(appears(settings));
    command("popover");
    EXPECT_TRUE(appears(popover));

    ::kill(static_cast<pid_t>(kestro->processId()), SIGTERM);

    ASSERT_TRUE(ends());
    EXPECT_EQ(kestro->exitCode(), 0);
    EXPECT_EQ(kestro->readAll().toStdString(), "");
}

}  // namespace
}  // namespace kestro
