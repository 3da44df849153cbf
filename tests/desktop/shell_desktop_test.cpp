#include "tests/desktop/shell_fixture.h"
#include "tests/desktop/status_item_client.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QThread>

#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <vector>

namespace kestro {
namespace {

using ShellOnTheDesktop = ShellFixture;

TEST_F(ShellOnTheDesktop, DiscardsUnknownAndOverlongCommands) {
    launch();

    command("Dashboard");
    command("popover\nhide");
    command("settings");

    EXPECT_TRUE(appears(settings));
    EXPECT_FALSE(frame(dashboard));
    EXPECT_FALSE(frame(popover));
}

TEST_F(ShellOnTheDesktop, OpensTheSettingsAtATabAndSavesTheTab) {
    launch();

    command("settings-cooling");
    ASSERT_TRUE(appears(settings));
    EXPECT_EQ(frame(settings)->size(), QSize(860, 750));
    EXPECT_TRUE(waitUntil([&] { return preferences().contains(QStringLiteral("Cooling & Fans")); }));

    session.key(QStringLiteral("ctrl+w"));
    EXPECT_TRUE(disappears(settings));

    notify(QStringLiteral("showSettings"), atTab(QStringLiteral("Keep-Awake")));
    EXPECT_TRUE(appears(settings));
    EXPECT_TRUE(waitUntil([&] { return preferences().contains(QStringLiteral("\"Keep-Awake\"")); }));
}

TEST_F(ShellOnTheDesktop, ToleratesMalformedSignalsAndUnknownTabs) {
    launch();
    command("settings-power");
    ASSERT_TRUE(appears(settings));
    const auto isShownAgainBy = [&](const std::vector<QVariantList>& calls) {
        session.key(QStringLiteral("ctrl+w"));
        EXPECT_TRUE(disappears(settings));
        for (const QVariantList& arguments : calls) {
            notify(QStringLiteral("showSettings"), arguments);
        }
        return appears(settings);
    };

    EXPECT_TRUE(isShownAgainBy({{}}));
    EXPECT_TRUE(isShownAgainBy({atTab(5),
                                atTab(QStringLiteral("keepAwake")),
                                {QStringLiteral("tab"), QStringLiteral("Keep-Awake")},
                                atTab(QString(1 << 20, QLatin1Char('K')))}));
    EXPECT_TRUE(waitUntil([&] { return preferences().contains(QStringLiteral("Power & Energy")); }));

    notify(QStringLiteral("showDashboard"), {QStringLiteral("unexpected")});
    EXPECT_TRUE(appears(dashboard));
}

TEST_F(ShellOnTheDesktop, OpensThePopoverAndClosesItByEscapeAndByAPressElsewhere) {
    launch();

    notify(QStringLiteral("togglePopover"));
    ASSERT_TRUE(appears(popover));
    EXPECT_EQ(frame(popover)->size(), QSize(330, 325));
    EXPECT_TRUE(hasState(popover, "_NET_WM_STATE_SKIP_TASKBAR"));
    session.screenshot(QStringLiteral("shell-popover"));
    session.key(QStringLiteral("Escape"));
    EXPECT_TRUE(disappears(popover));

    command("popover");
    ASSERT_TRUE(appears(popover));
    EXPECT_TRUE(hasState(popover, "_NET_WM_STATE_SKIP_TASKBAR"));
    session.click({300, 600});
    EXPECT_TRUE(disappears(popover));
}

TEST_F(ShellOnTheDesktop, TogglesThePopoverByClicksOnItsItem) {
    launch();
    // The readout is the last item of the strip.
    const QRect strip = session.strip()->frame;
    const QPoint item(strip.right() - 40, strip.center().y());

    session.click(item);
    ASSERT_TRUE(appears(popover));
    session.click(item);
    EXPECT_TRUE(disappears(popover));

    QThread::msleep(600);
    session.click(item);
    EXPECT_TRUE(appears(popover));
}

TEST_F(ShellOnTheDesktop, EndsOnASignalEvenWithTheDashboardOpen) {
    launch();
    command("dashboard");
    ASSERT_TRUE(appears(dashboard));

    ::kill(static_cast<pid_t>(kestro->processId()), SIGTERM);

    ASSERT_TRUE(ends());
    EXPECT_EQ(kestro->exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(kestro->exitCode(), 0);
}

TEST_F(ShellOnTheDesktop, ShowsTheDashboardWhenStartedAgain) {
    launch();

    const QProcess& second = session.startKestro();

    EXPECT_TRUE(waitUntil([&] { return second.state() == QProcess::NotRunning; }));
    EXPECT_EQ(second.exitCode(), 0);
    EXPECT_TRUE(appears(dashboard));
    EXPECT_EQ(kestro->state(), QProcess::Running);
}

TEST_F(ShellOnTheDesktop, WorksWithoutABusAndDetectsASecondStart) {
    const QStringList noBus{QStringLiteral("DBUS_SESSION_BUS_ADDRESS=unix:path=/nonexistent")};
    launch(noBus);

    const QProcess& second = session.startKestro(noBus);

    EXPECT_TRUE(waitUntil([&] { return second.state() == QProcess::NotRunning; }));
    EXPECT_EQ(second.exitCode(), 0);
    EXPECT_TRUE(appears(dashboard));
}

TEST_F(ShellOnTheDesktop, LeaksNoWindowsOrDescriptorsInManyCommands) {
    launch();
    const auto openDescriptors = [&] {
        return QDir(QStringLiteral("/proc/%1/fd").arg(kestro->processId()))
            .entryList(QDir::System | QDir::Files)
            .size();
    };
    for (const char* word : {"popover", "dashboard", "settings", "hide", "popover"}) {
        command(word);
    }
    ASSERT_TRUE(appears(settings));
    const auto before = openDescriptors();

    for (int round = 0; round < 50; ++round) {
        for (const char* word : {"popover", "dashboard", "settings", "hide", "popover"}) {
            command(word);
        }
    }
    // As fast as they can be written: only the content at the time of reading counts.
    for (int count = 0; count < 1000; ++count) {
        QFile file(commandFile());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(count % 2 == 0 ? "dashboard" : "hide");
    }
    command("dashboard");

    EXPECT_TRUE(appears(dashboard));
    EXPECT_TRUE(appears(settings));
    EXPECT_TRUE(disappears(popover));
    EXPECT_LE(openDescriptors(), before + 4);
}

struct ShellOnMate : ShellFixture {
    ShellOnMate() : ShellFixture(DesktopPanel::mate) {}
};

TEST_F(ShellOnMate, OpensThePopoverUnderTheItemAndClosesItWithASecondClick) {
    const QPoint item(1060, 12);
    launchWithItemAt(item);

    session.click(item);
    ASSERT_TRUE(appears(popover));
    const QRect place = *frame(popover);
    EXPECT_GE(place.top(), 24);
    EXPECT_LE(place.top(), 40);
    EXPECT_LE(std::abs(place.center().x() - item.x()), 330);
    session.screenshot(QStringLiteral("shell-popover-mate"));

    session.click(item);
    EXPECT_TRUE(disappears(popover));
}

TEST_F(ShellOnMate, RunsMenuEntriesTriggeredOverTheBus) {
    launch();
    const StatusItemClient client(session);
    const QString item = client.waitForItem();
    const auto choose = [&](const char* title) {
        const HostMenuEntry menu = client.menu(item);
        const HostMenuEntry* entry = menu.find(QString::fromUtf8(title));
        ASSERT_NE(entry, nullptr) << title;
        client.choose(item, entry->id);
    };

    choose("Full Studio Dashboard");
    EXPECT_TRUE(appears(dashboard));
    choose("Full Studio Dashboard");
    EXPECT_TRUE(disappears(dashboard));
    choose("Settings...");
    EXPECT_TRUE(appears(settings));
    choose("Turbo");
    EXPECT_TRUE(waitUntil([&] { return client.menu(item).find(QStringLiteral("Turbo"))->isChecked(); }));
    choose("Quit Kestro");
    EXPECT_TRUE(ends());
}

}  // namespace
}  // namespace kestro
