#include "tests/desktop/shell_fixture.h"

#include <QRect>

#include <gtest/gtest.h>

#include <chrono>

namespace kestro {
namespace {

using ShellOnTheDesktop = ShellFixture;

/// The screen below the strip, with its margins of 8.
constexpr QRect belowStrip(0, 44, 1280, 756);

/// Centred there, as when first shown.
constexpr QRect centredDashboard(10, 182, 1260, 480);

TEST_F(ShellOnTheDesktop, OpensResizesAndHidesTheDashboardByCommands) {
    launch();

    command("dashboard");
    EXPECT_EQ(settledFrame(dashboard, centredDashboard), centredDashboard);
    EXPECT_TRUE(session.windowProperty(*window(dashboard), QStringLiteral("_NET_WM_ICON"))
                    .contains(QStringLiteral("Icon (32 x 32)")));
    EXPECT_FALSE(hasState(dashboard, "_NET_WM_STATE_SKIP_TASKBAR"));
    session.screenshot(QStringLiteral("shell-dashboard"));

    command("dashboard-shrink\n");
    EXPECT_EQ(settledFrame(dashboard, {10, 202, 800, 460}), QRect(10, 202, 800, 460));

    // 1500 × 750 is too large for this screen.
    const QRect largest = belowStrip.marginsRemoved({8, 8, 8, 8});
    command("dashboard-resize");
    EXPECT_EQ(settledFrame(dashboard, largest), largest);

    command("hide");
    EXPECT_TRUE(disappears(dashboard));

    command("dashboard");
    EXPECT_EQ(settledFrame(dashboard, largest), largest);
}

TEST_F(ShellOnTheDesktop, ZoomsByDoubleClicksOnTheTitleBand) {
    launch();
    command("dashboard-shrink");
    const QRect before(10, 202, 800, 460);
    ASSERT_EQ(settledFrame(dashboard, before), before);

    doubleClick(before.topLeft() + QPoint(300, 20));
    EXPECT_EQ(settledFrame(dashboard, belowStrip), belowStrip);

    doubleClick(belowStrip.topLeft() + QPoint(300, 20));
    EXPECT_EQ(settledFrame(dashboard, before), before);
}

TEST_F(ShellOnTheDesktop, EntersAndLeavesFullScreen) {
    launch();

    for (const char* key : {"ctrl+super+f", "Escape"}) {
        command("dashboard-fullscreen");
        EXPECT_TRUE(waitUntil([&] { return hasState(dashboard, "_NET_WM_STATE_FULLSCREEN"); }));
        session.key(QString::fromLatin1(key));
        EXPECT_TRUE(waitUntil([&] { return !hasState(dashboard, "_NET_WM_STATE_FULLSCREEN"); })) << key;
        EXPECT_EQ(settledFrame(dashboard, centredDashboard), centredDashboard);
    }
}

TEST_F(ShellOnTheDesktop, PinsTheExistingWindow) {
    launch();
    command("dashboard");
    ASSERT_TRUE(appears(dashboard));
    const QString before = window(dashboard)->identifier;

    session.key(QStringLiteral("ctrl+p"));
    EXPECT_TRUE(waitUntil([&] { return hasState(dashboard, "_NET_WM_STATE_ABOVE"); }));
    EXPECT_EQ(window(dashboard)->identifier, before);

    session.key(QStringLiteral("ctrl+p"));
    EXPECT_TRUE(waitUntil([&] { return !hasState(dashboard, "_NET_WM_STATE_ABOVE"); }));
    EXPECT_EQ(window(dashboard)->identifier, before);
}

TEST_F(ShellOnTheDesktop, MovesByItsBackgroundAndResizesByItsEdge) {
    launch();
    command("dashboard-shrink");
    const QRect before(10, 202, 800, 460);
    ASSERT_EQ(settledFrame(dashboard, before), before);

    drag(dashboard, before.topLeft() + QPoint(300, 25), before.topLeft() + QPoint(400, 85));
    // The window follows from where the pointer was when the window manager took over.
    EXPECT_TRUE(waitUntil([&] {
        const QPoint way = frame(dashboard).value_or(before).topLeft() - before.topLeft();
        return (way - QPoint(100, 60)).manhattanLength() <= 16;
    }));
    const QRect moved = *frame(dashboard);
    EXPECT_EQ(moved.size(), before.size());

    const QPoint edge(moved.right() - 1, moved.center().y());
    drag(dashboard, edge, edge + QPoint(80, 0));
    EXPECT_TRUE(waitUntil([&] { return frame(dashboard).value_or(moved).width() > moved.width(); }));
    EXPECT_EQ(frame(dashboard)->topLeft(), moved.topLeft());
}

TEST_F(ShellOnTheDesktop, RestoresAWindowWithdrawnRightAfterBeingHiddenAndShown) {
    launch();
    command("dashboard");
    ASSERT_TRUE(appears(dashboard));
    command("hide");
    command("dashboard");
    finishCommands();
    ASSERT_TRUE(appears(dashboard));

    // What a lagging window manager does.
    unmap(*window(dashboard));

    ASSERT_TRUE(appears(dashboard));
    EXPECT_TRUE(waitUntil([&] {
        const auto shown = window(dashboard);
        return shown &&
               session.windowProperty(*shown, QStringLiteral("WM_STATE")).contains(QStringLiteral("Normal"));
    }));
}

TEST_F(ShellOnTheDesktop, DoesNotRestoreAWindowWithdrawnLater) {
    launch();
    command("dashboard");
    ASSERT_TRUE(appears(dashboard));

    unmap(*window(dashboard));

    EXPECT_FALSE(waitUntil([&] { return window(dashboard).has_value(); }, std::chrono::seconds(2)));
}

}  // namespace
}  // namespace kestro
