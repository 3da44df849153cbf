#include "core/model/fan_curve.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

namespace kestro {
namespace {

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

/// 1000 to 5000 rpm between 40 and 80 degrees.
FanCurveConfig curve(CurveShape shape) {
    FanCurveConfig config;
    config.curveShape = shape;
    config.lowTemp = 40;
    config.highTemp = 80;
    config.minRPM = 1000;
    config.maxRPM = 5000;
    return config;
}

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

TEST(CurvePreset, FillsEveryFieldOfACurve) {
    constexpr auto soc = SensorSource::averageSoC;
    constexpr auto peak = SensorSource::peakDie;
    using enum CurveShape;

    EXPECT_EQ(applyTo(CurvePreset::quietStudio, 1200, 7300),
              (FanCurveConfig{soc, sCurve, 55, 92, 1200, 7300, false, 1200, true, 5200}));
    EXPECT_EQ(applyTo(CurvePreset::balancedEveryday, 1200, 7300),
              (FanCurveConfig{soc, sCurve, 48, 84, 1200, 7300, false, 1200, false, 7300}));
    EXPECT_EQ(applyTo(CurvePreset::aggressiveTurbo, 1200, 7300),
              (FanCurveConfig{peak, linear, 40, 76, 1200, 7300, false, 1200, false, 7300}));
    EXPECT_EQ(applyTo(CurvePreset::linearPro, 1200, 7300),
              (FanCurveConfig{soc, linear, 45, 85, 1200, 7300, false, 1200, false, 7300}));
}

TEST(CurvePreset, CapsTheQuietCeilingAtTheFansMaximum) {
    EXPECT_EQ(applyTo(CurvePreset::quietStudio, 1200, 4800).acousticCeilingRPM, 4800);
    EXPECT_EQ(applyTo(CurvePreset::quietStudio, 1200, 7300).acousticCeilingRPM, 5200);
}

TEST(FanCurveConfig, ClampsToTheEndsOutsideTheThresholds) {
    const auto linear = curve(CurveShape::linear);

    EXPECT_EQ(linear.evaluateRPM(-20), 1000);
    EXPECT_EQ(linear.evaluateRPM(40), 1000);
    EXPECT_EQ(linear.evaluateRPM(80), 5000);
    EXPECT_EQ(linear.evaluateRPM(120), 5000);
}

TEST(FanCurveConfig, RisesLinearly) {
    const auto linear = curve(CurveShape::linear);

    EXPECT_DOUBLE_EQ(linear.evaluateRPM(50), 2000);
    EXPECT_DOUBLE_EQ(linear.evaluateRPM(60), 3000);
    EXPECT_DOUBLE_EQ(linear.evaluateRPM(79), 4900);
}

TEST(FanCurveConfig, RisesSmoothly) {
    const auto smooth = curve(CurveShape::sCurve);

    EXPECT_DOUBLE_EQ(smooth.evaluateRPM(50), 1000 + 4000 * 0.15625);
    EXPECT_DOUBLE_EQ(smooth.evaluateRPM(60), 3000);
    EXPECT_DOUBLE_EQ(smooth.evaluateRPM(70), 1000 + 4000 * 0.84375);
}

TEST(FanCurveConfig, RisesInStepsWithEachBreakpointInTheUpperTier) {
    auto stepped = curve(CurveShape::stepped);
    stepped.lowTemp = 0;
    stepped.highTemp = 100;

    EXPECT_DOUBLE_EQ(stepped.evaluateRPM(24.9), 1000);
    EXPECT_DOUBLE_EQ(stepped.evaluateRPM(25), 1000 + 4000 * 0.33);
    EXPECT_DOUBLE_EQ(stepped.evaluateRPM(49.9), 1000 + 4000 * 0.33);
    EXPECT_DOUBLE_EQ(stepped.evaluateRPM(50), 1000 + 4000 * 0.66);
    EXPECT_DOUBLE_EQ(stepped.evaluateRPM(79.9), 1000 + 4000 * 0.66);
    EXPECT_DOUBLE_EQ(stepped.evaluateRPM(80), 5000);
    EXPECT_DOUBLE_EQ(stepped.evaluateRPM(99), 5000);
}

TEST(FanCurveConfig, JumpsWhenTheThresholdsAreEqual) {
    auto jump = curve(CurveShape::linear);
    jump.highTemp = jump.lowTemp;

    EXPECT_EQ(jump.evaluateRPM(39), 1000);
    EXPECT_EQ(jump.evaluateRPM(40), 1000);
    EXPECT_EQ(jump.evaluateRPM(40.01), 5000);
}

TEST(FanCurveConfig, RunsAtTheCeilingAboveCrossedThresholds) {
    auto crossed = curve(CurveShape::linear);
    crossed.lowTemp = 80;
    crossed.highTemp = 40;

    EXPECT_EQ(crossed.evaluateRPM(60), 1000);
    EXPECT_EQ(crossed.evaluateRPM(81), 5000);
}

TEST(FanCurveConfig, StopsAtTheAcousticCeiling) {
    auto capped = curve(CurveShape::linear);
    capped.acousticCeilingEnabled = true;
    capped.acousticCeilingRPM = 3000;

    EXPECT_DOUBLE_EQ(capped.evaluateRPM(60), 2000);
    EXPECT_EQ(capped.evaluateRPM(90), 3000);
}

TEST(FanCurveConfig, IgnoresACeilingThatIsOffOrAboveTheMaximum) {
    auto high = curve(CurveShape::linear);
    high.acousticCeilingEnabled = true;
    high.acousticCeilingRPM = 9000;
    auto off = curve(CurveShape::linear);
    off.acousticCeilingRPM = 3000;

    EXPECT_EQ(high.evaluateRPM(90), 5000);
    EXPECT_EQ(off.evaluateRPM(90), 5000);
}

TEST(FanCurveConfig, StaysAtTheMinimumWhenTheCeilingIsBelowIt) {
    auto capped = curve(CurveShape::linear);
    capped.acousticCeilingEnabled = true;
    capped.acousticCeilingRPM = 800;

    for (const double temperature : {20.0, 40.0, 60.0, 80.0, 100.0}) {
        EXPECT_EQ(capped.evaluateRPM(temperature), 1000);
    }
}

TEST(FanCurveConfig, ClampsAFixedSpeedToTheRangeButNotToTheCeiling) {
    auto fixed = curve(CurveShape::linear);
    fixed.isFixedRPM = true;
    fixed.acousticCeilingEnabled = true;
    fixed.acousticCeilingRPM = 2000;

    fixed.fixedRPM = 4000;
    EXPECT_EQ(fixed.evaluateRPM(20), 4000);
    fixed.fixedRPM = 9000;
    EXPECT_EQ(fixed.evaluateRPM(20), 5000);
    fixed.fixedRPM = 100;
    EXPECT_EQ(fixed.evaluateRPM(90), 1000);
}

TEST(FanCurveConfig, FallsBackToTheMinimumOnNaN) {
    for (const auto shape : allCases<CurveShape>()) {
        auto noLow = curve(shape);
        noLow.lowTemp = notANumber;
        auto noHigh = curve(shape);
        noHigh.highTemp = notANumber;
        auto noMaximum = curve(shape);
        noMaximum.maxRPM = notANumber;
        auto noCeiling = curve(shape);
        noCeiling.acousticCeilingEnabled = true;
        noCeiling.acousticCeilingRPM = notANumber;
        auto noFixed = curve(shape);
        noFixed.isFixedRPM = true;
        noFixed.fixedRPM = notANumber;

        EXPECT_EQ(curve(shape).evaluateRPM(notANumber), 1000);
        EXPECT_EQ(noLow.evaluateRPM(60), 1000);
        EXPECT_EQ(noLow.evaluateRPM(noLow.highTemp), noLow.maxRPM);
        EXPECT_EQ(noFixed.evaluateRPM(60), 1000);
        EXPECT_EQ(noHigh.evaluateRPM(60), 1000);
        EXPECT_EQ(noMaximum.evaluateRPM(60), 1000);
        EXPECT_EQ(noCeiling.evaluateRPM(60), 1000);
    }
}

TEST(FanCurveConfig, ComparesByEveryField) {
    const FanCurveConfig base;
    const auto differsWith = [&](auto FanCurveConfig::*field, auto value) {
        auto other = base;
        other.*field = value;
        return !(other == base);
    };

    EXPECT_EQ(base, FanCurveConfig{});
    EXPECT_TRUE(differsWith(&FanCurveConfig::sensorSource, SensorSource::peakDie));
    EXPECT_TRUE(differsWith(&FanCurveConfig::curveShape, CurveShape::linear));
    EXPECT_TRUE(differsWith(&FanCurveConfig::lowTemp, 1.0));
    EXPECT_TRUE(differsWith(&FanCurveConfig::highTemp, 1.0));
    EXPECT_TRUE(differsWith(&FanCurveConfig::minRPM, 1.0));
    EXPECT_TRUE(differsWith(&FanCurveConfig::maxRPM, 1.0));
    EXPECT_TRUE(differsWith(&FanCurveConfig::isFixedRPM, true));
    EXPECT_TRUE(differsWith(&FanCurveConfig::fixedRPM, 1.0));
    EXPECT_TRUE(differsWith(&FanCurveConfig::acousticCeilingEnabled, true));
    EXPECT_TRUE(differsWith(&FanCurveConfig::acousticCeilingRPM, 1.0));
}

/// The complete stored form of a sample curve.
const std::string stored =
    R"({"sensorSource":"Peak Silicon Die","curveShape":"Stepped Acoustic Stages","lowTemp":45,"highTemp":82.5,)"
    R"("minRPM":1300,"maxRPM":6100.25,"isFixedRPM":true,"fixedRPM":2200,"acousticCeilingEnabled":false,)"
    R"("acousticCeilingRPM":5e3})";

std::string withReplaced(std::string_view part, std::string_view replacement) {
    std::string text = stored;
    return text.replace(text.find(part), part.size(), replacement);
}

TEST(FanCurveJson, ReadsEveryField) {
    const FanCurveConfig expected{
        SensorSource::peakDie, CurveShape::stepped, 45, 82.5, 1300, 6100.25, true, 2200, false, 5000};

    EXPECT_EQ(decodeFanCurve(stored), expected);
    EXPECT_EQ(decodeFanCurve(withReplaced("{", "{ \"later\" : [1], ")), expected);
}

TEST(FanCurveJson, RoundTrips) {
    for (const auto preset : allCases<CurvePreset>()) {
        const auto config = applyTo(preset, 1234.5, 0.1);

        const auto json = encodeFanCurve(config);

        ASSERT_TRUE(json);
        EXPECT_EQ(decodeFanCurve(*json), config);
    }
}

TEST(FanCurveJson, RequiresEveryField) {
    for (const std::string_view key :
         {"sensorSource", "curveShape", "lowTemp", "highTemp", "minRPM", "maxRPM", "isFixedRPM", "\"fixedRPM",
          "acousticCeilingEnabled", "acousticCeilingRPM"}) {
        EXPECT_EQ(decodeFanCurve(withReplaced(key, std::string(key) + "X")), std::nullopt) << key;
    }
}

TEST(FanCurveJson, RejectsUnknownChoices) {
    EXPECT_EQ(decodeFanCurve(withReplaced("Peak Silicon Die", "peakDie")), std::nullopt);
    EXPECT_EQ(decodeFanCurve(withReplaced("Stepped Acoustic Stages", "Curvy")), std::nullopt);
}

TEST(FanCurveJson, RejectsOtherTypes) {
    EXPECT_EQ(decodeFanCurve(withReplaced("45", "\"45\"")), std::nullopt);
    EXPECT_EQ(decodeFanCurve(withReplaced("45", "true")), std::nullopt);
    EXPECT_EQ(decodeFanCurve(withReplaced("45", "null")), std::nullopt);
    EXPECT_EQ(decodeFanCurve(withReplaced("true", "1")), std::nullopt);
    EXPECT_EQ(decodeFanCurve(withReplaced("\"Peak Silicon Die\"", "1")), std::nullopt);
    EXPECT_EQ(decodeFanCurve(withReplaced("45", "1e999")), std::nullopt);
}

TEST(FanCurveJson, RejectsAnythingButAnObject) {
    for (const std::string_view text : {"", "null", "[]", "{}", "{", "\"curve\"", "\xff"}) {
        EXPECT_EQ(decodeFanCurve(text), std::nullopt) << text;
    }
    EXPECT_EQ(decodeFanCurve(stored + "x"), std::nullopt);
    EXPECT_EQ(decodeFanCurve(stored + '\0'), std::nullopt);
}

TEST(FanCurveJson, SkipsAnyNumberOfOtherFields) {
    // Scanning all fields for each lookup would take minutes.
    std::string others;
    for (int field = 0; field < 100'000; ++field) {
        others += "\"" + std::to_string(field) + "\":0,";
    }

    EXPECT_TRUE(decodeFanCurve(withReplaced("{", "{" + others)));
}

TEST(FanCurveJson, CannotRepresentNonFiniteNumbers) {
    for (const auto field :
         {&FanCurveConfig::lowTemp, &FanCurveConfig::highTemp, &FanCurveConfig::minRPM, &FanCurveConfig::maxRPM,
          &FanCurveConfig::fixedRPM, &FanCurveConfig::acousticCeilingRPM}) {
        for (const double figure : {notANumber, HUGE_VAL, -HUGE_VAL}) {
            FanCurveConfig config;
            config.*field = figure;

            EXPECT_EQ(encodeFanCurve(config), std::nullopt);
        }
    }
}

}  // namespace
}  // namespace kestro
