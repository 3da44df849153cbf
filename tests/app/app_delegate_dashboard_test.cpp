#include "tests/app/app_delegate_fixture.h"

#include <gtest/gtest.h>

namespace kestro {
namespace {

struct AppDelegateDashboard : test::AppDelegateFixture {
    KestroDashboardWindow& window() { return *delegate.dashboardWindow(); }

    void showSections(int count) {
        Setting<bool>* sections[] = {&settings.showCompute, &settings.showCooling, &settings.showMemory,
                                     &settings.showNetwork, &settings.showTopProcesses};
        for (int index = 0; index < 5; ++index) {
            sections[index]->set(index < count);
        }
    }
};

TEST_F(AppDelegateDashboard, IsAtLeastThreeSectionsWide) {
    const int widths[] = {788, 788, 788, 788, 1024, 1260};
    for (int count = 0; count <= 5; ++count) {
        showSections(count);
        EXPECT_EQ(delegate.optimalDashboardWidth(), widths[count]) << count;
    }
}

TEST_F(AppDelegateDashboard, FollowsItsSectionsWhenNextShown) {
    launch();
    showSections(2);

    delegate.showDashboard();

    EXPECT_EQ(window().size(), QSize(788, 480));
    EXPECT_FALSE(delegate.hasUserCustomResizedDashboard());
}

TEST_F(AppDelegateDashboard, FollowsItsSectionsWhileVisible) {
    launch();
    delegate.showDashboard();

    showSections(4);
    settle();
    EXPECT_EQ(window().width(), 1024);

    showSections(3);
    settle();
    EXPECT_EQ(window().width(), 788);
}

TEST_F(AppDelegateDashboard, KeepsTheUsersSize) {
    launch();
    delegate.showDashboard();
    window().resize(900, 600);
    delegate.hideDashboard();
    showSections(3);

    delegate.showDashboard();

    EXPECT_TRUE(delegate.hasUserCustomResizedDashboard());
    EXPECT_EQ(window().size(), QSize(900, 600));
}

TEST_F(AppDelegateDashboard, OverridesTheUsersSizeWhenForced) {
    launch();
    delegate.showDashboard();
    window().resize(900, 600);

    delegate.adjustDashboardSize(true);

    EXPECT_EQ(window().size(), QSize(1260, 600));
}

TEST_F(AppDelegateDashboard, KeepsItsSizeInFullScreen) {
    launch();
    delegate.toggleFullScreenAction();
    settle();
    const QRect full = window().geometry();

    delegate.adjustDashboardSize(true);

    EXPECT_EQ(window().geometry(), full);
    EXPECT_FALSE(delegate.hasUserCustomResizedDashboard());
}

TEST_F(AppDelegateDashboard, HidesWhenClosedAndReappearsAsTheSameWindow) {
    launch();
    delegate.showDashboard();
    const KestroDashboardWindow* before = delegate.dashboardWindow();

    dashboardActions.onClose();
    EXPECT_FALSE(isDashboardShown());
    EXPECT_FALSE(engine.isUIActive.get());

    delegate.showDashboard();
    EXPECT_EQ(delegate.dashboardWindow(), before);
    EXPECT_EQ(contentsMade, 1);
}

TEST_F(AppDelegateDashboard, RefusesToClose) {
    launch();
    delegate.showDashboard();

    EXPECT_FALSE(delegate.windowShouldClose(window()));
    EXPECT_FALSE(isDashboardShown());
}

TEST_F(AppDelegateDashboard, ZoomsFromItsButton) {
    launch();
    delegate.showDashboard();
    const QRect before = window().geometry();

    dashboardActions.onToggleFullScreen();

    EXPECT_EQ(window().preZoomFrame(), before);
    EXPECT_FALSE(window().isFullScreen());
}

TEST_F(AppDelegateDashboard, OpensTheSettings) {
    launch();
    delegate.showDashboard();

    dashboardActions.onOpenSettings();

    EXPECT_TRUE(isSettingsShown());
    EXPECT_TRUE(isDashboardShown());
}

TEST_F(AppDelegateDashboard, FloatsWhilePinned) {
    settings.isPinned.set(true);
    launch();
    delegate.showDashboard();
    EXPECT_TRUE(windowSystem.isFloating(window()));

    settings.isPinned.set(false);
    EXPECT_FALSE(windowSystem.isFloating(window()));

    engine.setPinned(true);
    EXPECT_TRUE(windowSystem.isFloating(window()));
}

TEST_F(AppDelegateDashboard, StaysBelowTheSettings) {
    settings.isPinned.set(true);
    launch();
    delegate.showSettings();
    EXPECT_TRUE(windowSystem.isFloating(*delegate.settingsWindow()));
    windowSystem.above = {};

    delegate.showDashboard();
    EXPECT_EQ(windowSystem.above.first, delegate.settingsWindow());
    EXPECT_EQ(windowSystem.above.second, &window());

    settings.isPinned.set(false);
    EXPECT_FALSE(windowSystem.isFloating(*delegate.settingsWindow()));
}

TEST_F(AppDelegateDashboard, HoldsTheSettingsOnlyWhileOnTheScreen) {
    launch();
    delegate.showDashboard();
    delegate.showSettings();
    EXPECT_EQ(windowSystem.above.second, &window());

    window().setWindowState(Qt::WindowMinimized);
    settle();
    EXPECT_EQ(windowSystem.above.second, nullptr);

    delegate.settingsWindow()->close();
    delegate.showSettings();
    EXPECT_EQ(windowSystem.above.first, delegate.settingsWindow());
    EXPECT_EQ(windowSystem.above.second, nullptr);

    delegate.showDashboard();
    EXPECT_EQ(windowSystem.above.second, &window());
    delegate.hideDashboard();
    EXPECT_EQ(windowSystem.above.second, nullptr);
}

TEST_F(AppDelegateDashboard, HasAParentsPlaceBeforeTheSettingsAreShown) {
    launch();
    delegate.showDashboard();
    windowSystem.onOrderFront = [&](const QWidget& shown) {
        EXPECT_EQ(windowSystem.above.first, &shown);
        EXPECT_EQ(windowSystem.above.second, &window());
    };

    delegate.showSettings();

    EXPECT_TRUE(isSettingsShown());
}

TEST_F(AppDelegateDashboard, DoesNotFloatInFullScreen) {
    settings.isPinned.set(true);
    launch();
    delegate.toggleFullScreenAction();
    settle();
    EXPECT_FALSE(windowSystem.isFloating(window()));

    settings.isPinned.set(false);
    settings.isPinned.set(true);
    EXPECT_FALSE(windowSystem.isFloating(window()));

    window().toggleFullScreen();
    settle();
    EXPECT_TRUE(windowSystem.isFloating(window()));
}

TEST_F(AppDelegateDashboard, LetsTheEngineIdleWhileMinimised) {
    launch();
    delegate.showDashboard();

    window().setWindowState(Qt::WindowMinimized);
    settle();
    EXPECT_FALSE(engine.isUIActive.get());

    delegate.toggleDashboard();
    EXPECT_TRUE(window().isOnScreen());
    EXPECT_TRUE(engine.isUIActive.get());
}

TEST_F(AppDelegateDashboard, DoesNothingBeforeLaunch) {
    delegate.togglePopover();
    delegate.showDashboard();
    delegate.showDashboard({1500, 750});
    delegate.toggleFullScreenAction();
    delegate.hideDashboard();
    delegate.adjustDashboardSize(true);
    delegate.updateStatusItemText();
    delegate.showContextMenu();

    EXPECT_FALSE(engine.isUIActive.get());
}

}  // namespace
}  // namespace kestro
