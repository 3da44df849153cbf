#include "tests/app/app_delegate_fixture.h"

#include <QWindow>

namespace kestro {
namespace {

using namespace std::chrono_literals;

struct AppDelegateMemory : test::AppDelegateFixture {
    void openAndCloseEverything() {
        click();
        delegate.showDashboard();
        delegate.showSettings();
        settle();
        delegate.hideDashboard();
        delegate.settingsWindow()->close();
        click();
        settle();
    }

    void pass(std::chrono::seconds time) {
        mac.advance(time);
        settle();
    }
};

TEST_F(AppDelegateMemory, IsGivenBackOnceAllWindowsHaveBeenClosedForTenSeconds) {
    launch();
    openAndCloseEverything();
    ASSERT_FALSE(isPopoverShown());
    const SurfaceWindow* const windows[] = {delegate.popover(), delegate.dashboardWindow(),
                                            delegate.settingsWindow()};

    pass(9s);
    for (const SurfaceWindow* window : windows) {
        EXPECT_NE(window->windowHandle(), nullptr);
    }
    EXPECT_EQ(trims, 0);

    pass(6s);
    for (const SurfaceWindow* window : windows) {
        EXPECT_EQ(window->windowHandle(), nullptr);
        EXPECT_EQ(window->findChild<QWidget*>(), nullptr);
    }
    EXPECT_EQ(trims, 1);
}

TEST_F(AppDelegateMemory, IsKeptWhileAWindowIsVisible) {
    launch();
    openAndCloseEverything();
    delegate.showSettings();

    pass(60s);

    EXPECT_NE(delegate.dashboardWindow()->windowHandle(), nullptr);
    EXPECT_EQ(trims, 0);
}

TEST_F(AppDelegateMemory, KeepsEachWindowsStateAndPlace) {
    launch();
    openAndCloseEverything();
    const QRect frame(120, 90, 900, 600);
    delegate.showDashboard();
    delegate.dashboardWindow()->setGeometry(frame);
    delegate.hideDashboard();
    settings.isPinned.set(true);
    const int contents = contentsMade;
    pass(16s);
    ASSERT_EQ(delegate.dashboardWindow()->windowHandle(), nullptr);

    delegate.showDashboard();
    settle();

    EXPECT_EQ(delegate.dashboardWindow()->geometry(), frame);
    EXPECT_TRUE(windowSystem.isFloating(*delegate.dashboardWindow()));
    EXPECT_TRUE(delegate.hasUserCustomResizedDashboard());
    EXPECT_EQ(contentsMade, contents + 1);
}

}  // namespace
}  // namespace kestro
