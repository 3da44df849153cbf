#include "core/model/settings_enumerations.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace kestro {
namespace {

using Labels = std::vector<std::string_view>;

template <ClosedEnumeration E>
Labels rawValuesOf() {
    Labels labels;
    for (const E value : allCases<E>()) {
        labels.push_back(rawValue(value));
    }
    return labels;
}

/// Each raw value maps back to its case, is the case's identity, and belongs to no other case.
template <ClosedEnumeration E>
void expectRoundTrip() {
    std::unordered_set<std::string_view> distinct;
    std::unordered_set<E> hashed;
    for (const E value : allCases<E>()) {
        EXPECT_EQ(fromRawValue<E>(rawValue(value)), value);
        EXPECT_EQ(id(value), rawValue(value));
        EXPECT_TRUE(distinct.insert(rawValue(value)).second);
        EXPECT_TRUE(hashed.insert(value).second);
    }
    EXPECT_EQ(fromRawValue<E>(""), std::nullopt);
    EXPECT_EQ(fromRawValue<E>(std::string(rawValue(allCases<E>()[0])) + " "), std::nullopt);
}

TEST(SettingsEnumerations, FindEveryCaseByItsRawValueAndNothingElse) {
    expectRoundTrip<SettingsTab>();
    expectRoundTrip<ThemePalette>();
    expectRoundTrip<TemperatureUnit>();
    expectRoundTrip<FanSpeedUnit>();
    expectRoundTrip<MenubarIconStyle>();
    expectRoundTrip<MenubarDisplayMode>();
    expectRoundTrip<ProcessSortMetric>();
    expectRoundTrip<PollingProfile>();
    expectRoundTrip<HalftoneIntensity>();
    expectRoundTrip<HalftonePatternStyle>();
    expectRoundTrip<GlassMaterialStyle>();
    expectRoundTrip<MenubarDelimiter>();
    expectRoundTrip<MenubarModuleType>();
}

TEST(SettingsTab, ListsItsLabelsAndSymbolsInTabOrder) {
    EXPECT_EQ(rawValuesOf<SettingsTab>(), (Labels{"Menu Bar", "Keep-Awake", "Cooling & Fans", "Power & Energy",
                                                  "Dashboard", "Appearance", "Sensors"}));
    EXPECT_EQ(icon(SettingsTab::menubar), "menubar.dock.rectangle");
    EXPECT_EQ(icon(SettingsTab::keepAwake), "cup.and.saucer.fill");
    EXPECT_EQ(icon(SettingsTab::cooling), "fanblades");
    EXPECT_EQ(icon(SettingsTab::power), "bolt.batteryblock");
    EXPECT_EQ(icon(SettingsTab::dashboard), "square.grid.2x2");
    EXPECT_EQ(icon(SettingsTab::appearance), "paintbrush");
    EXPECT_EQ(icon(SettingsTab::sensors), "cpu");
}

TEST(ThemePalette, ListsItsLabelsInOrder) {
    EXPECT_EQ(rawValuesOf<ThemePalette>(), (Labels{"Cryogenic Azure", "Thermal Infrared", "Obsidian Emerald",
                                                   "Velvet Lilac", "Monolith Titanium"}));
}

TEST(TemperatureUnit, ListsItsLabelsInOrder) {
    EXPECT_EQ(rawValuesOf<TemperatureUnit>(), (Labels{"Celsius (\u00B0C)", "Fahrenheit (\u00B0F)"}));
}

TEST(FanSpeedUnit, ListsItsLabelsInOrder) {
    EXPECT_EQ(rawValuesOf<FanSpeedUnit>(), (Labels{"Compact (e.g. 7.8k)", "Full (e.g. 7,820 RPM)"}));
}

TEST(MenubarIconStyle, ListsItsLabelsInOrder) {
    EXPECT_EQ(rawValuesOf<MenubarIconStyle>(), (Labels{"Icons & Text", "Text Only", "Icon Only"}));
}

TEST(MenubarDisplayMode, ListsItsLabelsInOrder) {
    EXPECT_EQ(rawValuesOf<MenubarDisplayMode>(),
              (Labels{"Memory & Fan (Default)", "CPU & Fan", "Triple (RAM / CPU / Fan)", "Fan Speed Only",
                      "Memory Only", "CPU Only", "Icon Only"}));
}

TEST(ProcessSortMetric, ListsItsLabelsInOrder) {
    EXPECT_EQ(rawValuesOf<ProcessSortMetric>(), (Labels{"CPU Load (%)", "Memory Footprint"}));
}

TEST(PollingProfile, DefinesItsIntervals) {
    EXPECT_EQ(rawValuesOf<PollingProfile>(),
              (Labels{"Eco Saver (3.0s / 1.5s)", "Balanced (2.0s / 1.0s)", "High Precision (1.0s / 0.5s)"}));
    EXPECT_EQ(activeInterval(PollingProfile::eco), 1.5);
    EXPECT_EQ(idleInterval(PollingProfile::eco), 3.0);
    EXPECT_EQ(activeInterval(PollingProfile::balanced), 1.0);
    EXPECT_EQ(idleInterval(PollingProfile::balanced), 2.0);
    EXPECT_EQ(activeInterval(PollingProfile::highPrecision), 0.5);
    EXPECT_EQ(idleInterval(PollingProfile::highPrecision), 1.0);
}

TEST(HalftoneIntensity, DefinesItsOpacities) {
    EXPECT_EQ(rawValuesOf<HalftoneIntensity>(), (Labels{"Off", "Subtle (12%)", "Standard (25%)", "Bold (45%)"}));
    EXPECT_EQ(alpha(HalftoneIntensity::off), 0.0);
    EXPECT_EQ(alpha(HalftoneIntensity::subtle), 0.12);
    EXPECT_EQ(alpha(HalftoneIntensity::standard), 0.25);
    EXPECT_EQ(alpha(HalftoneIntensity::bold), 0.45);
}

TEST(HalftonePatternStyle, ListsItsLabelsInOrder) {
    EXPECT_EQ(rawValuesOf<HalftonePatternStyle>(), (Labels{"Header Band", "Thermal Plume", "Ambient Field"}));
}

TEST(GlassMaterialStyle, MapsToThePlatformsMaterialNumbers) {
    EXPECT_EQ(rawValuesOf<GlassMaterialStyle>(), (Labels{"Deep Frosted (.underWindowBackground)",
                                                         "HUD Contrast (.hudWindow)", "Subtle Tint (.popover)"}));
    EXPECT_EQ(static_cast<int>(nsMaterial(GlassMaterialStyle::deepFrosted)), 21);
    EXPECT_EQ(static_cast<int>(nsMaterial(GlassMaterialStyle::hudContrast)), 13);
    EXPECT_EQ(static_cast<int>(nsMaterial(GlassMaterialStyle::subtleTint)), 6);
}

TEST(MenubarDelimiter, InsertsItsRawValueAndShowsItsTitle) {
    EXPECT_EQ(rawValuesOf<MenubarDelimiter>(), (Labels{" \u00B7 ", " | ", " / ", "  "}));
    EXPECT_EQ(title(MenubarDelimiter::middleDot), "Middle Dot ( \u00B7 )");
    EXPECT_EQ(title(MenubarDelimiter::pipe), "Vertical Bar ( | )");
    EXPECT_EQ(title(MenubarDelimiter::slash), "Slash ( / )");
    EXPECT_EQ(title(MenubarDelimiter::space), "Double Space (   )");
}

TEST(MenubarModuleType, ListsItsNamesSymbolsAndSamples) {
    struct Expected {
        std::string_view rawValue, displayName, iconName, previewSample;
    };
    const std::vector<Expected> expected{
        {"appIcon", "Kestro Icon", "waveform.path.ecg", "●"},
        {"memory", "Unified Memory", "memorychip", "RAM 42%"},
        {"cpuUsage", "Total CPU Load", "cpu", "CPU 18%"},
        {"cpuClusters", "P/E Core Clusters", "square.grid.2x2", "P:24% E:8%"},
        {"thermal", "SoC Temperature", "thermometer.medium", "48°C"},
        {"fanSpeed", "Fan RPM Speeds", "fanblades", "1,420 RPM"},
        {"fanProfile", "Fan Performance Profile", "slider.horizontal.3", "⚡ AUTO"},
        {"powerMode", "Power Delivery Mode", "bolt.batteryblock", "⚡ HIGH"},
        {"network", "Network Throughput", "arrow.up.arrow.down", "↓ 1.2M ↑ 240K"},
        {"battery", "Battery & Power", "battery.100", "⚡ 98%"},
        {"diskSpace", "Available Storage", "internaldrive", "SSD 1.4 TB"},
        {"keepAwake", "Keep-Awake Telemetry", "cup.and.saucer.fill", "☕ ON"},
    };

    const auto modules = allCases<MenubarModuleType>();

    ASSERT_EQ(modules.size(), expected.size());
    for (std::size_t i = 0; i < modules.size(); ++i) {
        EXPECT_EQ(rawValue(modules[i]), expected[i].rawValue);
        EXPECT_EQ(displayName(modules[i]), expected[i].displayName);
        EXPECT_EQ(iconName(modules[i]), expected[i].iconName);
        EXPECT_EQ(previewSample(modules[i]), expected[i].previewSample);
    }
}

TEST(MenubarModuleType, IsFoundByItsCaseName) {
    EXPECT_EQ(fromRawValue<MenubarModuleType>("memory"), MenubarModuleType::memory);
    EXPECT_EQ(fromRawValue<MenubarModuleType>("Unified Memory"), std::nullopt);
}

}  // namespace
}  // namespace kestro
