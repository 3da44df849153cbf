#include "core/model/fan_curve.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string_view>
#include <vector>

namespace kestro {
namespace {

TEST(FanProfile, ListsItsTextsInOrder) {
    struct Expected {
        std::string_view label, description, iconName;
    };
    const std::vector<Expected> expected{
        {"Silent", "Minimal acoustics, baseline fan speed floor", "leaf.fill"},
        {"Normal (Auto)", "Apple SMC dynamic thermal management", "bolt.fill"},
        {"Cool", "Pre-emptive cooling curve, elevated baseline", "snowflake"},
        {"Turbo", "Maximum thermal dissipation, 100% turbine speed", "flame.fill"},
        {"Custom Curves", "Precision multi-point sensor-driven temperature curves", "waveform.path.ecg"},
    };

    const auto profiles = allCases<FanProfile>();

    ASSERT_EQ(profiles.size(), expected.size());
    for (std::size_t i = 0; i < profiles.size(); ++i) {
        EXPECT_EQ(rawValue(profiles[i]), expected[i].label);
        EXPECT_EQ(description(profiles[i]), expected[i].description);
        EXPECT_EQ(iconName(profiles[i]), expected[i].iconName);
        EXPECT_EQ(fromRawValue<FanProfile>(expected[i].label), profiles[i]);
    }
}

TEST(SensorSource, ListsItsTextsAndFallbacksInOrder) {
    struct Expected {
        std::string_view label, description, iconName;
        double fallback;
    };
    const std::vector<Expected> expected{
        {"Average SoC Temp", "Smooth overall Apple Silicon substrate temperature", "thermometer.medium", 48},
        {"Peak Silicon Die", "Instantaneous hottest thermal node across CPU/GPU cores", "flame.fill", 52},
        {"Battery Pack", "Chemical pack temperature during intensive charging", "battery.100", 32},
    };

    const auto sources = allCases<SensorSource>();

    ASSERT_EQ(sources.size(), expected.size());
    for (std::size_t i = 0; i < sources.size(); ++i) {
        EXPECT_EQ(rawValue(sources[i]), expected[i].label);
        EXPECT_EQ(description(sources[i]), expected[i].description);
        EXPECT_EQ(iconName(sources[i]), expected[i].iconName);
        EXPECT_EQ(fallbackTemperature(sources[i]), expected[i].fallback);
        EXPECT_EQ(fromRawValue<SensorSource>(expected[i].label), sources[i]);
    }
}

TEST(CurveShape, ListsItsTextsInOrder) {
    struct Expected {
        std::string_view label, description, iconName;
    };
    const std::vector<Expected> expected{
        {"Acoustic S-Curve", "Whisper-quiet idle floor, gentle mid-roll, firm thermal ramp", "waveform.path"},
        {"Linear Proportional", "Direct mathematical 1:1 progression between thresholds", "chart.xyaxis.line"},
        {"Stepped Acoustic Stages", "Discrete non-oscillating RPM tiers (Idle, Medium, High, Max)", "stairs"},
    };

    const auto shapes = allCases<CurveShape>();

    ASSERT_EQ(shapes.size(), expected.size());
    for (std::size_t i = 0; i < shapes.size(); ++i) {
        EXPECT_EQ(rawValue(shapes[i]), expected[i].label);
        EXPECT_EQ(id(shapes[i]), expected[i].label);
        EXPECT_EQ(description(shapes[i]), expected[i].description);
        EXPECT_EQ(iconName(shapes[i]), expected[i].iconName);
        EXPECT_EQ(fromRawValue<CurveShape>(expected[i].label), shapes[i]);
    }
}

TEST(CurvePreset, ListsItsLabelsAndSymbolsInOrder) {
    struct Expected {
        CurvePreset value;
        std::string_view label, iconName;
    };
    const std::vector<Expected> expected{
        {CurvePreset::quietStudio, "Quiet Studio", "mic.fill"},
        {CurvePreset::balancedEveryday, "Balanced Studio", "scale.3d"},
        {CurvePreset::aggressiveTurbo, "Aggressive Cooling", "bolt.fill"},
        {CurvePreset::linearPro, "Linear Standard", "chart.xyaxis.line"},
    };

    const auto presets = allCases<CurvePreset>();

    ASSERT_EQ(presets.size(), expected.size());
    for (std::size_t i = 0; i < presets.size(); ++i) {
        EXPECT_EQ(presets[i], expected[i].value);
        EXPECT_EQ(rawValue(presets[i]), expected[i].label);
        EXPECT_EQ(id(presets[i]), expected[i].label);
        EXPECT_EQ(iconName(presets[i]), expected[i].iconName);
        EXPECT_EQ(fromRawValue<CurvePreset>(expected[i].label), presets[i]);
    }
}

}  // namespace
}  // namespace kestro
