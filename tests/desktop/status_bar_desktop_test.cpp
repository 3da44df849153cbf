#include "tests/desktop/desktop_session.h"
#include "tests/desktop/status_item_client.h"

#include <QFile>
#include <QRegularExpression>

#include <gtest/gtest.h>

namespace kestro {
namespace {

/// The percentage of memory in use, as the kernel reports it now.
double usedMemoryPercent() {
    QFile file(QStringLiteral("/proc/meminfo"));
    if (!file.open(QIODevice::ReadOnly)) {
        return -1;
    }
    const QString text = QString::fromLatin1(file.readAll());
    const auto kilobytes = [&](const char* key) {
        const QRegularExpression line(QString::fromLatin1(key) + QStringLiteral(":\\s+(\\d+)"));
        return line.match(text).captured(1).toDouble();
    };
    return 100 * (1 - kilobytes("MemAvailable") / kilobytes("MemTotal"));
}

/// Waits for the strip; an empty window if it does not appear.
DesktopWindow waitForStrip(const DesktopSession& session) {
    std::optional<DesktopWindow> found;
    session.waitFor([&] {
        found = session.strip();
        return found.has_value();
    });
    return found.value_or(DesktopWindow());
}

/// The memory figure of a readout; absent before the first sample.
std::optional<int> memoryFigure(const QString& label) {
    const auto match = QRegularExpression(QStringLiteral("RAM (\\d+)%")).match(label);
    return match.hasMatch() ? std::optional(match.captured(1).toInt()) : std::nullopt;
}

/// True when a readout shows the memory in use, within two points.
bool showsMemory(const QString& readout) {
    const auto figure = memoryFigure(readout);
    return figure && std::abs(*figure - usedMemoryPercent()) <= 2;
}

bool showsMemory(const StatusItemClient& client, const QString& item) {
    return showsMemory(client.label(item));
}

/// The main item once it shows the used memory; empty if it does not. A panel that is starting may lose its items
/// once and get new ones.
QString itemThatShowsMemory(const DesktopSession& session, const StatusItemClient& client) {
    QString shown;
    session.waitFor([&] {
        const auto item = client.item(QStringLiteral("kestro-main"));
        shown = item && showsMemory(client, *item) ? *item : QString();
        return !shown.isEmpty();
    });
    return shown;
}

/// The files in the session's folder other than the preferences, the command files and those that existed
/// `before`.
QStringList filesLeft(const DesktopSession& session, const QStringList& before) {
    QStringList left = session.files();
    for (const QString& file : before) {
        left.removeAll(file);
    }
    left.removeAll(QStringLiteral("config/kestro/preferences.json"));
    left.removeAll(QStringLiteral("runtime/.kestro_cmd"));
    left.removeAll(QStringLiteral("runtime/kestro.cmd"));
    // What a panel and the font library write.
    left.removeIf([](const QString& file) {
        return file.startsWith(QStringLiteral("config/glib-2.0/")) ||
               file.startsWith(QStringLiteral("cache/fontconfig/"));
    });
    return left;
}

TEST(StatusBarOnMate, ShowsTheReadoutAsALabel) {
    DesktopSession session(DesktopPanel::mate);
    ASSERT_TRUE(session.failure().isEmpty()) << session.failure().toStdString();
    const StatusItemClient client(session);

    session.startKestro();
    const QString item = itemThatShowsMemory(session, client);

    ASSERT_FALSE(item.isEmpty());
    EXPECT_FALSE(client.property(item, QStringLiteral("XAyatanaLabelGuide")).toString().isEmpty());
    session.screenshot(QStringLiteral("mate-panel"));
}

TEST(StatusBarOnMate, SurvivesACrashAndRestartOfThePanel) {
    DesktopSession session(DesktopPanel::mate);
    ASSERT_TRUE(session.failure().isEmpty()) << session.failure().toStdString();
    const StatusItemClient client(session);
    const QProcess& kestro = session.startKestro();
    ASSERT_FALSE(client.waitForItem().isEmpty());
    const qint64 before = kestro.processId();

    session.killPanel();
    ASSERT_TRUE(waitUntil([&] { return client.items().isEmpty(); }));
    session.startPanel();

    EXPECT_FALSE(itemThatShowsMemory(session, client).isEmpty());
    EXPECT_EQ(kestro.state(), QProcess::Running);
    EXPECT_EQ(kestro.processId(), before);
    session.screenshot(QStringLiteral("mate-panel-restarted"));
}

TEST(StatusBarOnMate, QuitsThroughItsMenuAndLeavesOnlyThePreferences) {
    DesktopSession session(DesktopPanel::mate);
    ASSERT_TRUE(session.failure().isEmpty()) << session.failure().toStdString();
    const StatusItemClient client(session);
    ASSERT_TRUE(waitUntil([&] { return client.hasHost(); }));
    const QStringList before = session.files();
    const QProcess& kestro = session.startKestro();
    const QString item = itemThatShowsMemory(session, client);
    ASSERT_FALSE(item.isEmpty());
    const HostMenuEntry menu = client.menu(item);
    const HostMenuEntry* quit = menu.find(QStringLiteral("Quit Kestro"));
    ASSERT_NE(quit, nullptr);

    client.choose(item, quit->id);

    ASSERT_TRUE(waitUntil([&] { return kestro.state() == QProcess::NotRunning; }));
    EXPECT_EQ(kestro.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(kestro.exitCode(), 0);
    EXPECT_EQ(filesLeft(session, before).join(QLatin1Char(' ')).toStdString(), "");
}

TEST(StatusBarOnMate, OpensItsMenuOnARightClick) {
    DesktopSession session(DesktopPanel::mate);
    ASSERT_TRUE(session.failure().isEmpty()) << session.failure().toStdString();
    const StatusItemClient client(session);
    session.startKestro();
    const QString item = itemThatShowsMemory(session, client);
    ASSERT_FALSE(item.isEmpty());
    const QPoint place(1060, 12);
    ASSERT_TRUE(session.waitFor([&] { return session.showsAnItemAt(place); }));
    const QImage before = session.screenshot(QStringLiteral("mate-panel-before-menu"));

    session.click(place, 3);

    // The panel draws the menu itself, below the item.
    const QRect below(place.x() - 100, 40, 200, 100);
    EXPECT_TRUE(waitUntil(
        [&] { return session.screenshot(QStringLiteral("mate-panel-menu")).copy(below) != before.copy(below); }));
}

TEST(StatusBarWithoutAPanel, ShowsTheStripAtTheTopRight) {
    DesktopSession session;
    ASSERT_TRUE(session.failure().isEmpty()) << session.failure().toStdString();

    session.startKestro();
    const DesktopWindow window = waitForStrip(session);

    EXPECT_GT(window.frame.width(), 100);
    EXPECT_EQ(window.frame.top(), 8);
    EXPECT_EQ(window.frame.right() + 1, DesktopSession::screenSize.width() - 10);
    EXPECT_TRUE(waitUntil([&] { return showsMemory(session.strip().value_or(DesktopWindow()).title); }))
        << window.title.toStdString();
    session.screenshot(QStringLiteral("strip"));
}

TEST(StatusBarWithoutAPanel, KeepsTheStripOnEveryWorkspaceAsADock) {
    DesktopSession session;
    ASSERT_TRUE(session.failure().isEmpty()) << session.failure().toStdString();
    session.startKestro();
    const DesktopWindow window = waitForStrip(session);

    session.output(QStringLiteral("xdotool"), {QStringLiteral("set_desktop"), QStringLiteral("1")});

    EXPECT_EQ(session.windowProperty(window, QStringLiteral("_NET_WM_WINDOW_TYPE")),
              QStringLiteral("_NET_WM_WINDOW_TYPE_DOCK"));
    EXPECT_EQ(session.windowProperty(window, QStringLiteral("_NET_WM_DESKTOP")), QStringLiteral("4294967295"));
    EXPECT_TRUE(session.strip().has_value());
}

TEST(StatusBarWithoutAPanel, QuitsThroughTheMenuOfTheStrip) {
    DesktopSession session;
    ASSERT_TRUE(session.failure().isEmpty()) << session.failure().toStdString();
    const QStringList filesBefore = session.files();
    const QProcess& kestro = session.startKestro();
    const QPoint center = waitForStrip(session).frame.center();
    const QImage before = session.screenshot(QStringLiteral("strip"));

    session.click(center, 3);
    const QRect below(center + QPoint(0, 40), QSize(60, 60));
    ASSERT_TRUE(waitUntil(
        [&] { return session.screenshot(QStringLiteral("strip-menu")).copy(below) != before.copy(below); }));
    // The last entry of the menu quits.
    session.key(QStringLiteral("Up"));
    session.key(QStringLiteral("Return"));

    ASSERT_TRUE(waitUntil([&] { return kestro.state() == QProcess::NotRunning; }));
    EXPECT_EQ(kestro.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(kestro.exitCode(), 0);
    EXPECT_EQ(filesLeft(session, filesBefore).join(QLatin1Char(' ')).toStdString(), "");
}

TEST(StatusBarWithoutAPanel, MovesToAPanelThatStarts) {
    DesktopSession session(DesktopPanel::mate);
    ASSERT_TRUE(session.failure().isEmpty()) << session.failure().toStdString();
    const StatusItemClient client(session);
    session.startKestro();
    ASSERT_FALSE(client.waitForItem().isEmpty());
    session.killPanel();
    ASSERT_TRUE(waitUntil([&] { return session.strip().has_value(); }));

    session.startPanel();

    EXPECT_FALSE(client.waitForItem().isEmpty());
    EXPECT_TRUE(waitUntil([&] { return !session.strip().has_value(); }));
}

TEST(CoolingItemOnMate, RunsTheEntriesOfItsMenu) {
    DesktopSession session(DesktopPanel::mate);
    ASSERT_TRUE(session.failure().isEmpty()) << session.failure().toStdString();
    session.writePreferences(R"({"kestro.showDedicatedFanItem": true})");
    const StatusItemClient client(session);
    session.startKestro();
    QString cooling;
    ASSERT_TRUE(waitUntil([&] {
        // A panel that is starting may lose its items once and get new ones.
        cooling = client.item(QStringLiteral("kestro-cooling")).value_or(QString());
        return !cooling.isEmpty() && client.label(cooling).trimmed() == QStringLiteral("NORMAL (AUTO)");
    }));
    const HostMenuEntry menu = client.menu(cooling);
    const HostMenuEntry* turbo = menu.find(QStringLiteral("Turbo"));
    ASSERT_NE(turbo, nullptr);

    client.choose(cooling, turbo->id);

    EXPECT_TRUE(waitUntil([&] { return client.label(cooling).trimmed() == QStringLiteral("TURBO"); }))
        << client.label(cooling).toStdString();
    const HostMenuEntry after = client.menu(cooling);
    ASSERT_NE(after.find(QStringLiteral("Turbo")), nullptr);
    EXPECT_TRUE(after.find(QStringLiteral("Turbo"))->isChecked());
    EXPECT_FALSE(after.find(QStringLiteral("Silent"))->isChecked());
    session.screenshot(QStringLiteral("mate-panel-extras"));
}

TEST(CoolingItemOnMate, OpensItsMenuOnALeftClick) {
    DesktopSession session(DesktopPanel::mate);
    ASSERT_TRUE(session.failure().isEmpty()) << session.failure().toStdString();
    session.writePreferences(R"({"kestro.showDedicatedFanItem": true, "kestro.showDedicatedKeepAwakeItem": false,
                                 "kestro.activeMenubarModules": {"json": ["appIcon"]}})");
    const StatusItemClient client(session);
    session.startKestro();
    ASSERT_FALSE(client.waitForItem(QStringLiteral("kestro-cooling")).isEmpty());
    // The cooling item's text is to the left of the main item's icon and the clock.
    const QPoint place(1030, 12);
    ASSERT_TRUE(session.waitFor([&] { return session.showsAnItemAt(place); }));
    const QImage before = session.screenshot(QStringLiteral("mate-panel-cooling"));

    session.click(place, 1);

    const QRect below(place.x() - 40, 40, 100, 200);
    EXPECT_TRUE(waitUntil([&] {
        return session.screenshot(QStringLiteral("mate-panel-cooling-menu")).copy(below) != before.copy(below);
    }));
}

}  // namespace
}  // namespace kestro
