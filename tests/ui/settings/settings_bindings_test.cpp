#include "core/model/menubar_modules.h"
#include "tests/ui/settings/settings_bindings_fixture.h"
#include "ui/controls/option_tile.h"
#include "ui/controls/swatch.h"
#include "ui/controls/tab_strip.h"
#include "ui/settings/module_row.h"

#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>

namespace kestro {
namespace {

TEST_F(SettingsBindingsTest, ChoosesEveryTab) {
    open(SettingsTab::menubar);
    auto& strip = *view_->findChild<TabStrip*>();
    const auto areas = tabAreas(strip.size(), 7);
    press(strip, Qt::Key_End);

    for (const SettingsTab tab : allCases<SettingsTab>()) {
        const QPointF at = areas[static_cast<std::size_t>(tab)].center();
        send(strip, QEvent::MouseButtonPress, at, Qt::LeftButton);
        send(strip, QEvent::MouseButtonRelease, at, Qt::NoButton);
        expectKept(settings().selectedSettingsTab, tab);
        EXPECT_TRUE(view_->content(tab)->isVisible());
    }
    press(strip, Qt::Key_End);
    expectKept(settings().selectedSettingsTab, SettingsTab::sensors);
    press(strip, Qt::Key_Left);
    expectKept(settings().selectedSettingsTab, SettingsTab::appearance);
}

TEST_F(SettingsBindingsTest, BindsTheMenubarTab) {
    open(SettingsTab::menubar);

    checkSwitch("Dedicated Keep-Awake Status Bar Extra", settings().showDedicatedKeepAwakeItem);
    checkSwitch("Dedicated Cooling & Power Status Bar Extra", settings().showDedicatedFanItem);
    checkSegments("Separator Delimiter", settings().menubarDelimiter);
    checkSwitch("Show Metric Prefixes (e.g. RAM, CPU)", settings().showMenubarLabels);
    checkSegments("Refresh & Energy Profile", settings().pollingProfile);
}

TEST_F(SettingsBindingsTest, BindsEveryModule) {
    open(SettingsTab::menubar);
    Setting<MenubarModules>& modules = settings().activeMenubarModules;
    const auto all = allCases<MenubarModuleType>();
    for (ModuleRow* option : view_->findChildren<ModuleRow*>()) {
        const MenubarModuleType module = option->module();
        const MenubarModuleType other = module == all.front() ? all.back() : all.front();
        modules.set({other});

        click(*option);
        EXPECT_EQ(restarted().activeMenubarModules.get(), (MenubarModules{other, module}));
        press(option->upButton(), Qt::Key_Space);
        EXPECT_EQ(restarted().activeMenubarModules.get(), (MenubarModules{module, other}));
        click(option->downButton());
        EXPECT_EQ(restarted().activeMenubarModules.get(), (MenubarModules{other, module}));
        click(option->upButton());
        press(option->downButton(), Qt::Key_Return);
        EXPECT_EQ(modules.get(), (MenubarModules{other, module}));
        press(*option, Qt::Key_Space);
        EXPECT_EQ(restarted().activeMenubarModules.get(), (MenubarModules{other}));
        modules.set({other, module});
        EXPECT_TRUE(option->isOn());
    }
}

TEST_F(SettingsBindingsTest, BindsTheKeepAwakeTab) {
    open(SettingsTab::keepAwake);
    KeepAwakeManager& manager = machine_->keepAwake();

    checkOptions<SettingRow, KeepAwakeTarget>(
        settings().keepAwakeTargetMode, {KeepAwakeTarget::systemOnly, KeepAwakeTarget::displayAndSystem},
        [&manager](KeepAwakeTarget target) { manager.setTargetMode(target); });
    checkSegments("Default Session Duration", settings().defaultKeepAwakeDuration);
    checkSwitch("Deactivate When Battery Falls Below Threshold", settings().keepAwakeAutoDisableOnBattery);
    checkSlider("Cutoff Level:", {5, 50, 5}, [this] {
        EXPECT_EQ(kept("kestro.keepAwakeBatteryThreshold"),
                  PreferenceValue(settings().keepAwakeBatteryThreshold.get()));
        return settings().keepAwakeBatteryThreshold.get();
    });
    settings().keepAwakeBatteryThreshold.set(35);
    EXPECT_EQ(slider("Cutoff Level:").value(), 35);
    EXPECT_TRUE(shows("35%"));
    press(button("Activate Now"), Qt::Key_Space);
    EXPECT_TRUE(manager.isActive.get());
    press(button("Deactivate"), Qt::Key_Return);
    EXPECT_FALSE(manager.isActive.get());
}

TEST_F(SettingsBindingsTest, ShowsAStoredCutoffBeyondTheSliderUnclamped) {
    open(SettingsTab::keepAwake);

    settings().keepAwakeBatteryThreshold.set(80);

    EXPECT_TRUE(shows("80%"));
    EXPECT_EQ(slider("Cutoff Level:").value(), 50);
    EXPECT_EQ(settings().keepAwakeBatteryThreshold.get(), 80);
}

TEST_F(SettingsBindingsTest, RequestsEveryPowerMode) {
    open(SettingsTab::power);
    const auto settle = [this] {
        machine_->mac.runPending();
        machine_->advance(std::chrono::seconds(6));
    };

    for (const SystemPowerMode mode : allCases<SystemPowerMode>()) {
        SettingRow& option = row(std::string(rawValue(mode)).c_str());
        click(option);
        settle();
        EXPECT_EQ(machine_->powerManager().currentMode.get(), mode);
        EXPECT_TRUE(option.isOn());
    }
    press(row("Balanced (Automatic)"), Qt::Key_Return);
    settle();
    EXPECT_EQ(machine_->powerManager().currentMode.get(), SystemPowerMode::balanced);
    press(row("Low Power"), Qt::Key_Space);
    settle();
    EXPECT_TRUE(row("Low Power").isOn());
}

TEST_F(SettingsBindingsTest, BindsTheDashboardTab) {
    open(SettingsTab::dashboard);
    constexpr std::array<std::int64_t, 4> counts{5, 6, 8, 10};

    checkSwitch("Compute & Silicon Core Topology", settings().showCompute);
    checkSwitch("Cooling & Thermal Architecture", settings().showCooling);
    checkSwitch("Unified Memory & APFS Storage", settings().showMemory);
    checkSwitch("Network Bandwidth & Power Delivery", settings().showNetwork);
    checkSwitch("Live Activity & Top Consumers Space", settings().showTopProcesses);
    checkSegments("Default Metric:", settings().processSortMetric);
    checkSegments("Temperature Units:", settings().temperatureUnit);
    checkSwitch("Float Dashboard On Top (Pinned)", settings().isPinned);
    SegmentedChoice& count = segments("Processes Displayed:");
    press(count, Qt::Key_End);
    for (int i = 0; i < 4; ++i) {
        const std::int64_t wanted = counts[static_cast<std::size_t>(i)];
        clickSegment(count, i, 4);
        EXPECT_EQ(kept("kestro.processCountLimit"), PreferenceValue(wanted));
    }
    press(count, Qt::Key_Home);
    EXPECT_EQ(settings().processCountLimit.get(), 5);
    press(count, Qt::Key_Right);
    EXPECT_EQ(settings().processCountLimit.get(), 6);
}

TEST_F(SettingsBindingsTest, BindsTheAppearanceTab) {
    open(SettingsTab::appearance);

    checkOptions<Swatch>(settings().themePalette);
    checkSegments("Dot Intensity", settings().halftoneIntensity);
    checkOptions<OptionTile>(settings().halftonePattern);
    checkSwitch("Progressive Edge Blur Fades", settings().progressiveBlurFade);
    checkOptions<OptionTile>(settings().glassMaterial);
}

}  // namespace
}  // namespace kestro
