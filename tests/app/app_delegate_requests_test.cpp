#include "app/app_delegate.h"
#include "app/base/notification_names.h"
#include "tests/app/app_delegate_fixture.h"

namespace kestro {
namespace {

using namespace std::chrono_literals;

using AppDelegateMenu = test::AppDelegateFixture;

TEST_F(AppDelegateMenu, OpensOnASecondaryClickAndOnAControlClick) {
    launch();

    click(StatusClick::secondary);
    click(StatusClick::primary, true);

    EXPECT_EQ(bar.item(mainItem).menusOpened, 2);
    EXPECT_FALSE(isPopoverShown());
}

TEST_F(AppDelegateMenu, ShowsTheCurrentState) {
    launch();
    settings.isPinned.set(true);
    keepAwake.activate(KeepAwakeDuration::minutes30);
    fanManager.applyPreset(CurvePreset::quietStudio);

    const Menu menu = bar.menu(mainItem);

    EXPECT_NE(test::findEntry(menu, QStringLiteral("Unpin Window")), nullptr);
    EXPECT_NE(test::findEntry(menu, QStringLiteral("Deactivate Keep-Awake (30m 00s)")), nullptr);
    EXPECT_TRUE(test::findEntry(menu, QStringLiteral("30 Minutes"))->isChecked);
    EXPECT_TRUE(test::findEntry(menu, QStringLiteral("Custom Curves"))->isChecked);
    EXPECT_FALSE(test::findEntry(menu, QStringLiteral("Quiet Studio"))->isChecked);
    EXPECT_TRUE(test::findEntry(menu, QStringLiteral("Balanced (Automatic)"))->isChecked);
}

TEST_F(AppDelegateMenu, OpensTheSurfaces) {
    launch();

    EXPECT_TRUE(pickFromMenu("Quick Glance Popover"));
    EXPECT_TRUE(isPopoverShown());
    EXPECT_TRUE(pickFromMenu("Full Studio Dashboard"));
    EXPECT_TRUE(isDashboardShown());
    EXPECT_TRUE(pickFromMenu("Full Studio Dashboard"));
    EXPECT_FALSE(isDashboardShown());
    EXPECT_TRUE(pickFromMenu("Settings..."));
    EXPECT_TRUE(isSettingsShown());
}

TEST_F(AppDelegateMenu, TogglesFullScreenOfTheVisibleDashboard) {
    launch();

    EXPECT_TRUE(pickFromMenu("Toggle Full Screen"));

    EXPECT_TRUE(isDashboardShown());
    EXPECT_TRUE(delegate.dashboardWindow()->isFullScreen());
}

TEST_F(AppDelegateMenu, PinsAndUnpins) {
    launch();

    EXPECT_TRUE(pickFromMenu("Pin Window on Top"));
    EXPECT_TRUE(settings.isPinned.get());
    EXPECT_TRUE(pickFromMenu("Unpin Window"));
    EXPECT_FALSE(settings.isPinned.get());
}

TEST_F(AppDelegateMenu, ControlsKeepAwake) {
    settings.defaultKeepAwakeDuration.set(KeepAwakeDuration::hours1);
    launch();

    EXPECT_TRUE(pickFromMenu("Activate Indefinitely"));
    EXPECT_EQ(keepAwake.currentDuration.get(), KeepAwakeDuration::hours1);
    EXPECT_TRUE(pickFromMenu("2 Hours"));
    EXPECT_EQ(keepAwake.currentDuration.get(), KeepAwakeDuration::hours2);
    EXPECT_TRUE(pickFromMenu("Deactivate Keep-Awake (2h 00m)"));
    EXPECT_FALSE(keepAwake.isActive.get());
}

TEST_F(AppDelegateMenu, ControlsTheFans) {
    launch();

    EXPECT_TRUE(pickFromMenu("Turbo"));
    EXPECT_EQ(fanManager.currentProfile.get(), FanProfile::turbo);
    EXPECT_EQ(settings.fanProfile.get(), FanProfile::turbo);
    EXPECT_TRUE(pickFromMenu("Linear Standard"));
    EXPECT_EQ(fanManager.currentProfile.get(), FanProfile::custom);
    EXPECT_EQ(fanManager.activePreset.get(), CurvePreset::linearPro);
}

TEST_F(AppDelegateMenu, SwitchesThePowerMode) {
    launch();

    EXPECT_TRUE(pickFromMenu("High Power"));

    EXPECT_EQ(powerManager.currentMode.get(), SystemPowerMode::highPower);
}

TEST_F(AppDelegateMenu, Quits) {
    launch();

    EXPECT_TRUE(pickFromMenu("Quit Kestro"));

    EXPECT_EQ(terminations, 1);
}

using AppDelegateNotifications = test::AppDelegateFixture;

TEST_F(AppDelegateNotifications, ToggleThePopover) {
    launch();

    notify("kestro.notify.togglePopover");
    EXPECT_TRUE(isPopoverShown());
    notify("kestro.notify.togglePopover");
    EXPECT_FALSE(isPopoverShown());
}

TEST_F(AppDelegateNotifications, ShowTheDashboard) {
    launch();

    notify("kestro.notify.showDashboard");

    EXPECT_TRUE(isDashboardShown());
    EXPECT_TRUE(engine.isUIActive.get());
}

TEST_F(AppDelegateNotifications, ShowTheSettingsAtTheTabWithTheGivenLabel) {
    launch();

    notify("kestro.notify.showSettings", {{"tab", std::string("Keep-Awake")}});

    EXPECT_TRUE(isSettingsShown());
    EXPECT_EQ(settings.selectedSettingsTab.get(), SettingsTab::keepAwake);
    EXPECT_TRUE(mac.userDefaults.object("kestro.selectedSettingsTab"));
}

TEST_F(AppDelegateNotifications, ShowTheSettingsAtTheCurrentTabOtherwise) {
    launch();

    for (const NotificationUserInfo& userInfo :
         {NotificationUserInfo{}, NotificationUserInfo{{"tab", std::string("keepAwake")}},
          NotificationUserInfo{{"tab", 3.0}}, NotificationUserInfo{{"tab", std::monostate()}},
          NotificationUserInfo{{"other", std::string("Keep-Awake")}}}) {
        notify("kestro.notify.showSettings", userInfo);

        EXPECT_TRUE(isSettingsShown());
        EXPECT_EQ(settings.selectedSettingsTab.get(), SettingsTab::menubar);
        EXPECT_FALSE(mac.userDefaults.object("kestro.selectedSettingsTab"));
        delegate.settingsWindow()->close();
    }
}

TEST_F(AppDelegateNotifications, OpenTheSettingsForTheDedicatedItems) {
    settings.showDedicatedFanItem.set(true);
    launch();

    EXPECT_TRUE(test::pick(bar.menu(QStringLiteral("kestro-cooling")), QStringLiteral("Cooling Settings...")));
    settle();

    EXPECT_TRUE(isSettingsShown());
    EXPECT_EQ(settings.selectedSettingsTab.get(), SettingsTab::cooling);
}

using AppDelegateCommands = test::AppDelegateFixture;

TEST_F(AppDelegateCommands, OpenTheSettingsAtATabAndSaveTheTab) {
    launch();

    command("settings-cooling\n");

    EXPECT_TRUE(isSettingsShown());
    EXPECT_EQ(settings.selectedSettingsTab.get(), SettingsTab::cooling);
    EXPECT_TRUE(mac.userDefaults.object("kestro.selectedSettingsTab"));
    EXPECT_EQ(mac.fileEvents.contents(commandFile), "");
}

TEST_F(AppDelegateCommands, AreAlsoTakenFromTheUsersOwnFile) {
    launch();

    mac.fileEvents.write(ownCommandFile, "settings\n");
    settle();

    EXPECT_TRUE(isSettingsShown());
    EXPECT_EQ(mac.fileEvents.contents(ownCommandFile), "");
}

TEST_F(AppDelegateCommands, OpenAndResizeAClosedDashboardFromItsBottomLeftCorner) {
    launch();
    delegate.showDashboard();
    delegate.hideDashboard();
    const QRect before = delegate.dashboardWindow()->geometry();

    command("dashboard-shrink");

    const QRect after = delegate.dashboardWindow()->geometry();
    EXPECT_TRUE(isDashboardShown());
    EXPECT_EQ(after.size(), QSize(800, 460));
    EXPECT_EQ(after.bottomLeft(), before.bottomLeft());
}

TEST_F(AppDelegateCommands, ResizeADashboardThatTheUserResized) {
    launch();
    delegate.showDashboard();
    delegate.dashboardWindow()->resize(900, 500);
    ASSERT_TRUE(delegate.hasUserCustomResizedDashboard());

    command("dashboard-resize");

    EXPECT_EQ(delegate.dashboardWindow()->size(), QSize(1500, 750));
}

TEST_F(AppDelegateCommands, ShowTheDashboardInFullScreen) {
    launch();

    command("dashboard-fullscreen");
    EXPECT_TRUE(delegate.dashboardWindow()->isFullScreen());
    command("dashboard-fullscreen");
    EXPECT_FALSE(delegate.dashboardWindow()->isFullScreen());
    EXPECT_TRUE(isDashboardShown());
}

TEST_F(AppDelegateCommands, HideTheDashboardAndLetTheEngineIdle) {
    launch();
    command("dashboard");
    ASSERT_TRUE(engine.isUIActive.get());

    command("hide");

    EXPECT_FALSE(isDashboardShown());
    EXPECT_FALSE(engine.isUIActive.get());
}

TEST_F(AppDelegateCommands, HideWithoutADashboardStillRecomputesTheUIActiveState) {
    launch();
    engine.setUIActive(true);

    command("hide");

    EXPECT_FALSE(isDashboardShown());
    EXPECT_FALSE(engine.isUIActive.get());
}

TEST_F(AppDelegateCommands, ControlTheFans) {
    launch();

    command("toggle-fan-link");
    EXPECT_FALSE(fanManager.isLinked.get());
    command("select-fan-1");
    EXPECT_EQ(settings.selectedFanIndex.get(), 1);
    command("select-fan-0");
    EXPECT_EQ(settings.selectedFanIndex.get(), 0);
    command("preset-quiet");
    EXPECT_EQ(fanManager.activePreset.get(), CurvePreset::quietStudio);
}

TEST_F(AppDelegateCommands, ReuseTheWindowsInAThousandCommands) {
    launch();
    for (int round = 0; round < 200; ++round) {
        for (const char* word : {"popover", "settings", "dashboard", "hide", "popover"}) {
            command(word);
        }
    }

    command("dashboard");

    EXPECT_TRUE(isDashboardShown());
    EXPECT_TRUE(isSettingsShown());
    EXPECT_FALSE(isPopoverShown());
    EXPECT_EQ(contentsMade, 3);
}

}  // namespace
}  // namespace kestro
