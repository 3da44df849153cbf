#include "tests/ui/settings/settings_view_test.h"
#include "ui/controls/badge.h"
#include "ui/controls/option_tile.h"
#include "ui/controls/swatch.h"
#include "ui/settings/power_tab.h"

namespace kestro {
namespace {

using KeepAwakeTabTest = SettingsViewFixture;

TEST_F(KeepAwakeTabTest, StartsAndStopsKeepingAwake) {
    open(SettingsTab::keepAwake);
    settings().defaultKeepAwakeDuration.set(KeepAwakeDuration::minutes15);
    EXPECT_TRUE(shows("KEEP-AWAKE INACTIVE"));
    EXPECT_TRUE(shows("Sleep timer follows macOS Energy Saver preferences"));

    click(button("Activate Now"));
    EXPECT_TRUE(machine_->keepAwake().isActive.get());
    EXPECT_EQ(machine_->mac.assertionsHeld(), 1);
    EXPECT_TRUE(shows("KEEP-AWAKE ACTIVE"));
    EXPECT_TRUE(shows("Remaining: 15m 00s"));

    click(button("Deactivate"));
    EXPECT_FALSE(machine_->keepAwake().isActive.get());
    EXPECT_EQ(machine_->mac.assertionsHeld(), 0);
}

TEST_F(KeepAwakeTabTest, FollowsChangesMadeElsewhere) {
    open(SettingsTab::keepAwake);

    machine_->keepAwake().activate(KeepAwakeDuration::minutes30, KeepAwakeTarget::systemOnly);
    machine_->advance(std::chrono::seconds(1));

    EXPECT_TRUE(shows("Remaining: 29m 59s"));
    EXPECT_TRUE(row("System Only (Display May Sleep)").isOn());
    EXPECT_FALSE(row("Display & System").isOn());
}

TEST_F(KeepAwakeTabTest, SetsTheScopeThroughTheManager) {
    open(SettingsTab::keepAwake);

    click(row("System Only (Display May Sleep)"));
    EXPECT_EQ(machine_->keepAwake().targetMode.get(), KeepAwakeTarget::systemOnly);
    EXPECT_EQ(restarted().keepAwakeTargetMode.get(), KeepAwakeTarget::systemOnly);

    press(row("System Only (Display May Sleep)"), Qt::Key_Down);
    EXPECT_EQ(settings().keepAwakeTargetMode.get(), KeepAwakeTarget::displayAndSystem);
}

TEST_F(KeepAwakeTabTest, BindsDurationAndBatteryProtectionBothWays) {
    open(SettingsTab::keepAwake);
    SegmentedChoice& duration = segments("Default Session Duration");
    SettingRow& protection = row("Deactivate When Battery Falls Below Threshold");
    Slider& cutoff = slider("Cutoff Level:");

    clickSegment(duration, 4, 6);
    click(protection);
    press(cutoff, Qt::Key_End);

    EXPECT_EQ(settings().defaultKeepAwakeDuration.get(), KeepAwakeDuration::hours2);
    EXPECT_EQ(settings().keepAwakeAutoDisableOnBattery.get(), protection.isOn());
    EXPECT_EQ(settings().keepAwakeBatteryThreshold.get(), 50);
    EXPECT_TRUE(shows("50%"));
    settings().defaultKeepAwakeDuration.set(KeepAwakeDuration::indefinite);
    settings().keepAwakeBatteryThreshold.set(25);
    EXPECT_EQ(duration.chosen(), 0);
    EXPECT_EQ(cutoff.value(), 25);
}

TEST_F(KeepAwakeTabTest, CanMoveACutoffBeyondTheSliderToItsEnd) {
    open(SettingsTab::keepAwake);
    settings().keepAwakeBatteryThreshold.set(80);
    EXPECT_TRUE(shows("80%"));

    press(slider("Cutoff Level:"), Qt::Key_End);

    EXPECT_EQ(settings().keepAwakeBatteryThreshold.get(), 50);
    EXPECT_TRUE(shows("50%"));
}

using PowerTabTest = SettingsViewFixture;

TEST_F(PowerTabTest, RequestsAModeAndShowsTheActiveOne) {
    open(SettingsTab::power);
    EXPECT_TRUE(row("Balanced (Automatic)").isOn());

    click(row("Low Power"));
    EXPECT_FALSE(row("Low Power").isOn());
    machine_->mac.runPending();
    machine_->advance(std::chrono::seconds(6));

    EXPECT_EQ(machine_->powerManager().currentMode.get(), SystemPowerMode::lowPower);
    EXPECT_TRUE(row("Low Power").isOn());
    int badges = 0;
    for (const Badge* badge : view_->findChildren<Badge*>()) {
        badges += badge->isVisible() && badge->text() == QStringLiteral("ACTIVE");
    }
    EXPECT_EQ(badges, 1);
}

TEST_F(PowerTabTest, DoesNotRequestModesThatTheArrowsPass) {
    open(SettingsTab::power);
    view_->activateWindow();
    QApplication::processEvents();
    row("Balanced (Automatic)").setFocus(Qt::TabFocusReason);

    press(row("Balanced (Automatic)"), Qt::Key_Up);
    machine_->mac.runPending();
    machine_->advance(std::chrono::seconds(6));
    EXPECT_EQ(view_->focusWidget(), &row("Low Power"));
    EXPECT_EQ(machine_->powerManager().currentMode.get(), SystemPowerMode::balanced);

    press(row("Low Power"), Qt::Key_Space);
    machine_->mac.runPending();
    machine_->advance(std::chrono::seconds(6));
    EXPECT_EQ(machine_->powerManager().currentMode.get(), SystemPowerMode::lowPower);
}

TEST_F(PowerTabTest, ShowsTheBattery) {
    open(SettingsTab::power);

    EXPECT_TRUE(shows("87%"));
    EXPECT_TRUE(shows("Health Condition: Normal"));
    EXPECT_TRUE(shows("4h 12m remaining"));
    machine_->mac.powerSources.setBattery(12, true);
    machine_->advance(std::chrono::seconds(3));
    EXPECT_TRUE(shows("12%"));
    EXPECT_TRUE(shows("Charging (12%)"));
}

TEST_F(PowerTabTest, ShowsExternalPowerWithoutABattery) {
    open(SettingsTab::power, [](SimulatedMac& mac) { mac.powerSources.removeBattery(); });

    EXPECT_TRUE(shows("100%"));
    EXPECT_TRUE(shows("Health Condition: Normal"));
    EXPECT_TRUE(shows("AC Connected (No Battery)"));
    machine_->mac.powerSources.setBattery(55, false);
    machine_->advance(std::chrono::seconds(3));
    EXPECT_TRUE(shows("55%"));
    EXPECT_TRUE(shows("Health Condition: Normal"));
}

TEST(BatteryLineTest, ShowsCapacitiesUnlessTheyArePercentages) {
    PowerTelemetry power;
    power.hasBattery = true;
    power.timeRemainingMinutes = 252;
    power.currentCapacity = 5288;
    power.maxCapacity = 6075;
    EXPECT_EQ(batteryLine(power), QString::fromUtf8("4h 12m remaining · 5288 / 6075 mAh"));

    power.currentCapacity = 87;
    power.maxCapacity = 100;
    EXPECT_EQ(batteryLine(power), QStringLiteral("4h 12m remaining"));
    EXPECT_EQ(batteryLine(PowerTelemetry::initial()), QStringLiteral("AC Connected (No Battery)"));
}

using DashboardTabTest = SettingsViewFixture;

TEST_F(DashboardTabTest, BindsEverySwitchBothWays) {
    open(SettingsTab::dashboard);
    const std::array bound{
        std::pair{"Compute & Silicon Core Topology", &settings().showCompute},
        std::pair{"Cooling & Thermal Architecture", &settings().showCooling},
        std::pair{"Unified Memory & APFS Storage", &settings().showMemory},
        std::pair{"Network Bandwidth & Power Delivery", &settings().showNetwork},
        std::pair{"Live Activity & Top Consumers Space", &settings().showTopProcesses},
        std::pair{"Float Dashboard On Top (Pinned)", &settings().isPinned},
    };

    for (const auto& [title, setting] : bound) {
        const bool before = setting->get();
        click(row(title));
        EXPECT_EQ(setting->get(), !before) << title;
        EXPECT_EQ(std::get<bool>(stored().values.at(std::string(setting->key()))), !before) << title;
        setting->set(before);
        EXPECT_EQ(row(title).isOn(), before) << title;
    }
}

TEST_F(DashboardTabTest, ListsProcessesAgainForANewMetric) {
    open(SettingsTab::dashboard);
    int listings = 0;
    const auto subscription = machine_->engine().topProcesses.subscribe([&listings](const auto&) { ++listings; });

    clickSegment(segments("Default Metric:"), 1, 2);
    machine_->mac.runPending();

    EXPECT_EQ(settings().processSortMetric.get(), ProcessSortMetric::memory);
    EXPECT_EQ(listings, 1);
}

TEST_F(DashboardTabTest, BindsCountAndUnitBothWays) {
    open(SettingsTab::dashboard);
    SegmentedChoice& count = segments("Processes Displayed:");
    SegmentedChoice& unit = segments("Temperature Units:");

    clickSegment(count, 3, 4);
    clickSegment(unit, 1, 2);

    EXPECT_EQ(settings().processCountLimit.get(), 10);
    EXPECT_EQ(settings().temperatureUnit.get(), TemperatureUnit::fahrenheit);
    settings().processCountLimit.set(5);
    EXPECT_EQ(count.chosen(), 0);
    settings().processCountLimit.set(7);
    EXPECT_EQ(count.chosen(), -1);
    settings().temperatureUnit.set(TemperatureUnit::celsius);
    EXPECT_EQ(unit.chosen(), 0);
}

using AppearanceTabTest = SettingsViewFixture;

TEST_F(AppearanceTabTest, BindsThePaletteBothWays) {
    open(SettingsTab::appearance);

    click(named<Swatch>("Velvet Lilac"));
    EXPECT_EQ(settings().themePalette.get(), ThemePalette::lilac);
    EXPECT_TRUE(named<Swatch>("Velvet Lilac").isOn());

    settings().themePalette.set(ThemePalette::obsidian);
    EXPECT_TRUE(named<Swatch>("Obsidian Emerald").isOn());
    EXPECT_FALSE(named<Swatch>("Velvet Lilac").isOn());
}

TEST_F(AppearanceTabTest, BindsTheInkBothWays) {
    open(SettingsTab::appearance);
    SegmentedChoice& intensity = segments("Dot Intensity");

    clickSegment(intensity, 3, 4);
    click(named<OptionTile>("Thermal Plume"));

    EXPECT_EQ(settings().halftoneIntensity.get(), HalftoneIntensity::bold);
    EXPECT_EQ(settings().halftonePattern.get(), HalftonePatternStyle::plume);
    settings().halftoneIntensity.set(HalftoneIntensity::off);
    EXPECT_EQ(intensity.chosen(), 0);
    settings().halftonePattern.set(HalftonePatternStyle::ambient);
    EXPECT_TRUE(named<OptionTile>("Ambient Field").isOn());
}

TEST_F(AppearanceTabTest, BindsTheGlassBothWays) {
    open(SettingsTab::appearance);
    SettingRow& fade = row("Progressive Edge Blur Fades");

    click(fade);
    click(named<OptionTile>("HUD Contrast (.hudWindow)"));

    EXPECT_EQ(settings().progressiveBlurFade.get(), fade.isOn());
    EXPECT_EQ(settings().glassMaterial.get(), GlassMaterialStyle::hudContrast);
    settings().glassMaterial.set(GlassMaterialStyle::subtleTint);
    EXPECT_TRUE(named<OptionTile>("Subtle Tint (.popover)").isOn());
}

}  // namespace
}  // namespace kestro
