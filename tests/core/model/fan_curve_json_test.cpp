#include "core/model/fan_curve.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <optional>
#include <string>
#include <string_view>

namespace kestro {
namespace {

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

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
