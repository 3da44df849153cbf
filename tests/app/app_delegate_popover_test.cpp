#include "app/app_delegate.h"
#include "app/windows/window_geometry.h"
#include "tests/app/app_delegate_fixture.h"
#include "ui/popover/popover_geometry.h"

#include <QCursor>
#include <QScreen>

#include <gmock/gmock.h>

namespace kestro {
namespace {

using namespace std::chrono_literals;

struct AppDelegatePopover : test::AppDelegateFixture {
    /// Makes the popover close by itself, with the pointer at that position.
    void pressAt(const QPoint& pointer) {
        QCursor::setPos(pointer);
        QEvent deactivate(QEvent::WindowDeactivate);
        QApplication::sendEvent(delegate.popover(), &deactivate);
        settle();
    }
};

TEST_F(AppDelegatePopover, OpensAndClosesOnClicks) {
    launch();

    click();
    EXPECT_TRUE(isPopoverShown());
    click();
    EXPECT_FALSE(isPopoverShown());
    click();
    EXPECT_TRUE(isPopoverShown());
}

TEST_F(AppDelegatePopover, OpensBesideTheItem) {
    launch();

    click();

    EXPECT_EQ(delegate.popover()->pos(), QPoint(740 - 330, 26));
}

TEST_F(AppDelegatePopover, PrefersThePositionReportedByTheItem) {
    launch();
    bar.item(mainItem).geometry = {500, 0, 40, 20};

    click();

    EXPECT_EQ(delegate.popover()->pos(), QPoint(540 - 330, 26));
}

TEST_F(AppDelegatePopover, OpensWithAFreshFullSample) {
    launch();
    ASSERT_EQ(engine.power.get().hasBattery, false);

    click();

    EXPECT_EQ(engine.power.get().hasBattery, true);
    EXPECT_EQ(engine.cpuHistory.get().size(), 30);
}

TEST_F(AppDelegatePopover, TakesOnlyOneSampleWhenOpening) {
    launch();
    int samples = 0;
    const Subscription subscription = engine.disk.subscribe([&samples](const DiskTelemetry&) { ++samples; });

    click();
    EXPECT_EQ(samples, 1);

    delegate.showDashboard();
    EXPECT_EQ(samples, 2);
}

TEST_F(AppDelegatePopover, KeepsTheEngineActiveWhileVisible) {
    launch();

    click();
    EXPECT_TRUE(engine.isUIActive.get());
    EXPECT_THAT(mac.runLoop.timerPeriods(), testing::Contains(1000ms));

    delegate.popover()->close();
    EXPECT_FALSE(engine.isUIActive.get());
}

TEST_F(AppDelegatePopover, StaysClosedAfterTheClickThatTookItsFocus) {
    launch();
    click();
    pressAt({100, 300});
    ASSERT_FALSE(isPopoverShown());

    click();
    EXPECT_FALSE(isPopoverShown());

    mac.advance(1s);
    click();
    EXPECT_TRUE(isPopoverShown());
}

TEST_F(AppDelegatePopover, IgnoresOnlyOneClickAfterClosing) {
    launch();
    click();
    pressAt({100, 300});

    click();
    EXPECT_FALSE(isPopoverShown());
    click();
    EXPECT_TRUE(isPopoverShown());
}

TEST_F(AppDelegatePopover, IgnoresNoClickAfterAPressOutsideAnItemOfKnownPosition) {
    launch();
    bar.item(mainItem).geometry = {500, 0, 40, 20};
    click();

    pressAt({100, 300});
    click();
    EXPECT_TRUE(isPopoverShown());

    pressAt({510, 10});
    click();
    EXPECT_FALSE(isPopoverShown());
}

TEST_F(AppDelegatePopover, IgnoresNoClickAfterTheMenuWasOpened) {
    launch();
    click();
    pressAt({100, 300});

    click(StatusClick::secondary);
    click();

    EXPECT_TRUE(isPopoverShown());
}

TEST_F(AppDelegatePopover, ForgetsTheLastClicksPositionWhenTheScreensChange) {
    launch();
    const QRect available = QGuiApplication::primaryScreen()->availableGeometry();
    click();
    const QPoint beside = delegate.popover()->pos();
    click();

    command("popover");
    EXPECT_EQ(delegate.popover()->pos(), beside);
    command("popover");
    Q_EMIT QGuiApplication::primaryScreen()->availableGeometryChanged(available);
    settle();
    command("popover");
    EXPECT_EQ(delegate.popover()->pos(),
              popoverFrame({}, popover_geometry::size, QGuiApplication::primaryScreen()->geometry(), available)
                  .topLeft());
    EXPECT_NE(delegate.popover()->pos(), beside);
}

TEST_F(AppDelegatePopover, MovesToAScreenThatIsLeftWhenTheScreensChange) {
    launch();
    QScreen& screen = *QGuiApplication::primaryScreen();
    const QRect available = screen.availableGeometry();
    click();
    // Where the screen was that has gone.
    delegate.popover()->move(5000, 100);

    Q_EMIT screen.availableGeometryChanged(available);
    settle();

    EXPECT_TRUE(isPopoverShown());
    EXPECT_EQ(delegate.popover()->pos(),
              popoverFrame({}, popover_geometry::size, screen.geometry(), available).topLeft());
}

TEST_F(AppDelegatePopover, FollowsItsItemWhenTheScreensChange) {
    launch();
    bar.item(mainItem).geometry = {500, 0, 40, 20};
    click();
    bar.item(mainItem).geometry = {600, 0, 40, 20};

    Q_EMIT QGuiApplication::primaryScreen()->geometryChanged({});
    settle();

    EXPECT_EQ(delegate.popover()->pos(), QPoint(640 - 330, 26));
}

TEST_F(AppDelegatePopover, StaysClosedWhenTheScreensChange) {
    launch();
    click();
    click();

    Q_EMIT QGuiApplication::primaryScreen()->geometryChanged({});
    settle();

    EXPECT_FALSE(isPopoverShown());
}

TEST_F(AppDelegatePopover, OpensByCommandRightAfterLosingFocus) {
    launch();
    click();
    pressAt({100, 300});

    command("popover");

    EXPECT_TRUE(isPopoverShown());
}

TEST_F(AppDelegatePopover, ClosesWhenTheDashboardOpens) {
    launch();
    click();

    popoverActions.onOpenDashboard();
    settle();

    EXPECT_FALSE(isPopoverShown());
    EXPECT_TRUE(isDashboardShown());
    EXPECT_TRUE(engine.isUIActive.get());
}

TEST_F(AppDelegatePopover, ClosesWhenTheSettingsOpen) {
    launch();
    click();

    popoverActions.onOpenSettings();
    settle();

    EXPECT_FALSE(isPopoverShown());
    EXPECT_TRUE(isSettingsShown());
}

TEST_F(AppDelegatePopover, Quits) {
    launch();
    click();

    popoverActions.onQuit();

    EXPECT_EQ(terminations, 1);
}

}  // namespace
}  // namespace kestro
