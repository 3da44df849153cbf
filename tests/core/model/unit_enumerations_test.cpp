#include "core/model/unit_enumerations.h"

#include <gtest/gtest.h>

namespace kestro {
namespace {

std::string full(std::int64_t rpm) {
    return format(FanSpeedUnit::rawRPM, rpm, DigitGrouping::english());
}

TEST(TemperatureUnit, FormatsCelsiusWithOneDecimal) {
    EXPECT_EQ(format(TemperatureUnit::celsius, 48.0), "48.0°C");
    EXPECT_EQ(format(TemperatureUnit::celsius, -0.06), "-0.1°C");
}

TEST(TemperatureUnit, ConvertsToFahrenheitBeforeRounding) {
    EXPECT_EQ(format(TemperatureUnit::fahrenheit, 48.0), "118.4°F");
    EXPECT_EQ(format(TemperatureUnit::fahrenheit, -40.0), "-40.0°F");
    EXPECT_EQ(format(TemperatureUnit::fahrenheit, 0.0), "32.0°F");
}

TEST(TemperatureUnit, IsFoundOnlyByItsFullLabel) {
    EXPECT_EQ(fromRawValue<TemperatureUnit>("Celsius (°C)"), TemperatureUnit::celsius);
    EXPECT_EQ(fromRawValue<TemperatureUnit>("Celsius"), std::nullopt);
    EXPECT_EQ(fromRawValue<TemperatureUnit>("celsius"), std::nullopt);
}

TEST(FanSpeedUnit, ShowsThousandsWithOneDecimal) {
    EXPECT_EQ(format(FanSpeedUnit::kRPM, 7820), "7.8k");
    EXPECT_EQ(format(FanSpeedUnit::kRPM, 1000), "1.0k");
}

TEST(FanSpeedUnit, ShowsSmallSpeedsWithoutAUnitInTheCompactForm) {
    EXPECT_EQ(format(FanSpeedUnit::kRPM, 999), "999");
    EXPECT_EQ(format(FanSpeedUnit::kRPM, 850), "850");
    EXPECT_EQ(format(FanSpeedUnit::kRPM, 0), "0");
    EXPECT_EQ(format(FanSpeedUnit::kRPM, -2000), "-2000");
}

TEST(FanSpeedUnit, GroupsDigitsInTheFullForm) {
    EXPECT_EQ(full(7820), "7,820 RPM");
    EXPECT_EQ(full(850), "850 RPM");
    EXPECT_EQ(full(0), "0 RPM");
}

}  // namespace
}  // namespace kestro
