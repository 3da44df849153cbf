#include "core/model/fan_curve.h"

#include <gtest/gtest.h>

#include <limits>

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

}  // namespace
}  // namespace kestro
