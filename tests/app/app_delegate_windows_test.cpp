#include "tests/app/app_delegate_fixture.h"

#include <QKeySequence>
#include <QShortcut>

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace kestro {
namespace {

struct AppDelegateShortcuts : test::AppDelegateFixture {
    void press(QWidget& window, const char* key) {
        const QKeySequence sequence(QString::fromUtf8(key));
        int found = 0;
        for (QShortcut* shortcut : window.findChildren<QShortcut*>()) {
            if (shortcut->key() == sequence) {
                ++found;
                Q_EMIT shortcut->activated();
            }
        }
        EXPECT_EQ(found, 1) << key;
        settle();
    }
};

TEST_F(AppDelegateShortcuts, WorkInTheDashboard) {
    launch();
    delegate.showDashboard();
    KestroDashboardWindow& window = *delegate.dashboardWindow();

    press(window, "Ctrl+P");
    EXPECT_TRUE(settings.isPinned.get());
    press(window, "Ctrl+,");
    EXPECT_TRUE(isSettingsShown());
    press(window, "F11");
    EXPECT_TRUE(window.isFullScreen());
    press(window, "Ctrl+Meta+F");
    EXPECT_FALSE(window.isFullScreen());
    press(window, "Ctrl+D");
    EXPECT_FALSE(window.isVisible());
    press(window, "Ctrl+Q");
    EXPECT_EQ(terminations, 1);
}

TEST_F(AppDelegateShortcuts, CloseEveryWindow) {
    launch();
    delegate.showDashboard();
    delegate.showSettings();
    click();

    press(*delegate.popover(), "Ctrl+W");
    press(*delegate.settingsWindow(), "Ctrl+W");
    press(*delegate.dashboardWindow(), "Ctrl+W");

    EXPECT_FALSE(engine.isUIActive.get());
}

using AppDelegateSettings = test::AppDelegateFixture;

TEST_F(AppDelegateSettings, AreCreatedOnceAndKept) {
    launch();
    delegate.showSettings();
    const SettingsWindow* before = delegate.settingsWindow();

    settingsActions.onClose();
    EXPECT_FALSE(isSettingsShown());
    delegate.showSettings();

    EXPECT_EQ(delegate.settingsWindow(), before);
    EXPECT_TRUE(isSettingsShown());
    EXPECT_EQ(contentsMade, 1);
}

TEST_F(AppDelegateSettings, KeepTheEngineActiveWhileVisible) {
    launch();

    delegate.showSettings();
    EXPECT_TRUE(engine.isUIActive.get());
    delegate.settingsWindow()->close();
    EXPECT_FALSE(engine.isUIActive.get());
}

TEST_F(AppDelegateSettings, KeepTheEngineActiveWhenAnotherSurfaceCloses) {
    launch();
    delegate.showSettings();
    delegate.showDashboard();

    delegate.hideDashboard();

    EXPECT_TRUE(engine.isUIActive.get());
}

struct AppDelegateOverlay : test::AppDelegateFixture {
    /// Something appears at the top of the screen.
    void coverTop(int height, const std::function<void()>& report) {
        windowSystem.available = {0, height, 1920, 1080 - height};
        report();
        settle();
    }
};

TEST_F(AppDelegateOverlay, MovesVisibleWindowsClearAsAPanelDoes) {
    launch();
    delegate.showDashboard();
    delegate.showSettings();
    delegate.dashboardWindow()->move(0, 0);
    delegate.settingsWindow()->move(1000, 0);

    coverTop(44, bar.overlayChanged);
    EXPECT_EQ(delegate.dashboardWindow()->y(), 52);
    EXPECT_EQ(delegate.settingsWindow()->y(), 52);

    coverTop(80, windowSystem.panelsChanged);
    EXPECT_EQ(delegate.dashboardWindow()->y(), 88);
    EXPECT_EQ(delegate.settingsWindow()->y(), 88);
    EXPECT_FALSE(delegate.hasUserCustomResizedDashboard());
}

TEST_F(AppDelegateOverlay, IsNotFollowedAnyMoreAtTheEnd) {
    auto another = std::make_unique<AppDelegate>(mac.platform(), services(), smc, Shell{bar, windowSystem},
                                                 surfaces(), std::vector<std::string>{}, ProcessActions{});
    another->applicationDidFinishLaunching();
    ASSERT_TRUE(bar.overlayChanged);

    another.reset();

    EXPECT_FALSE(bar.overlayChanged);
    EXPECT_FALSE(windowSystem.panelsChanged);
}

}  // namespace
}  // namespace kestro
