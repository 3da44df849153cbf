#include "ui/dashboard/cooling_section.h"

#include "ui/dashboard/temperature_rows.h"

#include <gtest/gtest.h>

#include <vector>

namespace kestro {
namespace {

constexpr MeasuredTemperatures all{true, true, true};

ThermalTelemetry thermals(double average, double peak, double battery, const char* state = "Nominal") {
    return {average, peak, battery, 20, state};
}

TEST(TemperatureRows, HaveLabelsAndDetailsWhenFull) {
    const auto rows = temperatureRows(thermals(52.44, 61.8, 31.6), all, false);

    EXPECT_EQ(rows[0].label, QStringLiteral("SoC Junction Temp"));
    EXPECT_EQ(rows[0].detail, QStringLiteral("Die Average"));
    EXPECT_EQ(rows[0].value, QStringLiteral("52.4°C"));
    EXPECT_EQ(rows[1].label, QStringLiteral("Peak Die Temp"));
    EXPECT_EQ(rows[1].detail, QStringLiteral("Hottest Core"));
    EXPECT_EQ(rows[2].label, QStringLiteral("Battery Pack Temp"));
    EXPECT_EQ(rows[2].detail, QStringLiteral("Cell Pack"));
    EXPECT_EQ(rows[3].label, QStringLiteral("Thermal Pressure"));
    EXPECT_EQ(rows[3].detail, QStringLiteral("Thermal State"));
    EXPECT_EQ(rows[3].value, QStringLiteral("Nominal"));
}

TEST(TemperatureRows, KeepOnlyTheDetailOfThermalPressureWhenCompact) {
    const auto rows = temperatureRows(thermals(52, 61, 31), all, true);

    EXPECT_TRUE(rows[0].detail.isEmpty());
    EXPECT_TRUE(rows[1].detail.isEmpty());
    EXPECT_TRUE(rows[2].detail.isEmpty());
    EXPECT_EQ(rows[3].detail, QStringLiteral("Thermal State"));
    EXPECT_EQ(rows[0].compactLabel, QStringLiteral("SoC Die"));
    EXPECT_EQ(rows[1].compactLabel, QStringLiteral("Peak Die"));
    EXPECT_EQ(rows[2].compactLabel, QStringLiteral("Battery"));
    EXPECT_EQ(rows[3].compactLabel, QStringLiteral("Pressure"));
}

TEST(TemperatureRows, ScaleTheirProgressUpToOne) {
    const auto rows = temperatureRows(thermals(52.5, 84, 25), all, false);
    EXPECT_DOUBLE_EQ(rows[0].progressFraction, 0.5);
    EXPECT_DOUBLE_EQ(rows[1].progressFraction, 0.8);
    EXPECT_DOUBLE_EQ(rows[2].progressFraction, 0.5);

    const auto hot = temperatureRows(thermals(120, 130, 70), all, false);
    EXPECT_EQ(hot[0].progressFraction, 1);
    EXPECT_EQ(hot[1].progressFraction, 1);
    EXPECT_EQ(hot[2].progressFraction, 1);
}

TEST(TemperatureRows, ChangeColourStrictlyAboveTheirThresholds) {
    const auto at = temperatureRows(thermals(85.0, 75.0, 42.0), all, false);
    EXPECT_EQ(at[0].valueTint, Ink(KestroTheme::accentCool));
    EXPECT_EQ(at[1].valueTint, Ink(KestroTheme::accentCool));
    EXPECT_EQ(at[2].valueTint, Ink(KestroTheme::accentNominal));

    const auto above = temperatureRows(thermals(85.1, 75.1, 42.1), all, false);
    EXPECT_EQ(above[0].valueTint, Ink(KestroTheme::accentCritical));
    EXPECT_EQ(above[1].valueTint, Ink(KestroTheme::accentWarning));
    EXPECT_EQ(above[2].valueTint, Ink(KestroTheme::accentWarning));

    EXPECT_EQ(temperatureRows(thermals(0, 90.0, 0), all, false)[1].valueTint, Ink(KestroTheme::accentWarning));
    EXPECT_EQ(temperatureRows(thermals(0, 90.1, 0), all, false)[1].valueTint, Ink(KestroTheme::accentCritical));
}

TEST(TemperatureRows, ShowTheSystemsThermalPressure) {
    const auto pressure = [](const char* state) {
        return temperatureRows(thermals(50, 50, 30, state), all, false)[3];
    };

    EXPECT_EQ(pressure("Nominal").progressFraction, 0.25);
    EXPECT_EQ(pressure("Nominal").valueTint, Ink(KestroTheme::accentNominal));
    EXPECT_EQ(pressure("Fair").progressFraction, 0.5);
    EXPECT_EQ(pressure("Fair").valueTint, Ink(KestroTheme::accentWarning));
    EXPECT_EQ(pressure("Serious").progressFraction, 0.9);
    EXPECT_EQ(pressure("Critical").progressFraction, 0.9);
    EXPECT_EQ(pressure("").progressFraction, 0.9);
}

std::vector<FanTelemetry> fans(int count) {
    std::vector<FanTelemetry> made;
    for (int i = 0; i < count; ++i) {
        made.push_back({i, i == 0 ? "Left Fan" : "Right Fan", 1420, 1400, 1200, 7300});
    }
    return made;
}

TEST(CoolingGauges, ShowTwoFans) {
    const auto gauges = coolingGauges(fans(2), thermals(50, 60, 30), all, {}, SectionTier::full);

    ASSERT_EQ(gauges.size(), 2U);
    EXPECT_EQ(gauges[0].title, QStringLiteral("Left Fan"));
    EXPECT_EQ(gauges[0].unit, QStringLiteral("RPM"));
    EXPECT_EQ(gauges[0].subtitle, QStringLiteral("of 7300 RPM"));
    EXPECT_EQ(gauges[0].minVal, 0);
    EXPECT_EQ(gauges[0].max, 7300);
    EXPECT_EQ(coolingGauges(fans(2), thermals(50, 60, 30), all, {}, SectionTier::compact)[1].subtitle,
              QStringLiteral("of 7300"));
}

TEST(CoolingGauges, ShowTheDieBesideOneFan) {
    const auto gauges = coolingGauges(fans(1), thermals(50, 60, 30), all, {}, SectionTier::full);

    ASSERT_EQ(gauges.size(), 2U);
    EXPECT_EQ(gauges[1].title, QStringLiteral("SoC Die"));
    EXPECT_EQ(gauges[1].unit, QStringLiteral("°C"));
    EXPECT_EQ(gauges[1].minVal, 20);
    EXPECT_EQ(gauges[1].max, 105);
    EXPECT_EQ(gauges[1].value, 50);
}

TEST(CoolingGauges, ShowAverageAndPeakWithoutFans) {
    const auto gauges = coolingGauges({}, thermals(50, 60, 30), all, {}, SectionTier::full);

    ASSERT_EQ(gauges.size(), 2U);
    EXPECT_EQ(gauges[0].value, 50);
    EXPECT_EQ(gauges[1].value, 60);
}

TEST(CoolingGauges, AreReplacedByRowsForMoreThanTwoFans) {
    EXPECT_TRUE(coolingGauges(fans(3), thermals(50, 60, 30), all, {}, SectionTier::full).empty());
}

TEST(CoolingGauges, ShowTheTargetsOfTheCurves) {
    const auto gauges = coolingGauges(fans(2), thermals(50, 60, 30), all, {1412.7, 1500}, SectionTier::full);

    EXPECT_EQ(gauges[0].subtitle, QStringLiteral("target 1412 RPM"));
    EXPECT_EQ(gauges[1].subtitle, QStringLiteral("target 1500 RPM"));
}

TEST(CoolingGauges, OmitAnUnknownMaximum) {
    auto unknown = fans(2);
    unknown[0].maxRPM = 0;

    EXPECT_TRUE(coolingGauges(unknown, thermals(50, 60, 30), all, {}, SectionTier::full)[0].subtitle.isEmpty());
}

TEST(FanRows, UseTwoColumnsAboveFour) {
    const auto four = fanRowAreas(4, 205, 112);
    const auto six = fanRowAreas(6, 205, 112);

    EXPECT_EQ(four.size(), 4U);
    EXPECT_EQ(four[1].left(), 0);
    EXPECT_EQ(four[1].height(), 28);
    EXPECT_EQ(six.size(), 6U);
    EXPECT_GT(six[1].left(), 100);
    EXPECT_EQ(six[1].top(), six[0].top());
}

TEST(FanRows, AreOmittedWhenTheyDoNotFit) {
    const auto many = fanRowAreas(40, 121.6, 92);

    EXPECT_LT(many.size(), 40U);
    EXPECT_LE(many.back().bottom(), 92);
}

}  // namespace
}  // namespace kestro
