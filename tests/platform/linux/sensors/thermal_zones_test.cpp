#include "platform/linux/sensors/thermal_zones.h"

#include "tests/platform/linux/support.h"

#include <gtest/gtest.h>

#include <string>

namespace kestro {
namespace {

TEST(ParseMillidegrees, AcceptsPlausibleTemperatures) {
    EXPECT_EQ(parseMillidegrees("61500\n"), 61500);
    EXPECT_EQ(parseMillidegrees("-5000\n"), -5000);
    EXPECT_FALSE(parseMillidegrees("-274000\n"));
    EXPECT_FALSE(parseMillidegrees("2147483647\n"));
    EXPECT_FALSE(parseMillidegrees("99999999999\n"));
    EXPECT_FALSE(parseMillidegrees(""));
    EXPECT_FALSE(parseMillidegrees("\xFF"));
}

TEST(ParseTripKind, RecognisesTheKindsThatSlowOrStopTheMachine) {
    EXPECT_EQ(parseTripKind("passive\n"), TripPoint::Kind::passive);
    EXPECT_EQ(parseTripKind("hot\n"), TripPoint::Kind::hot);
    EXPECT_EQ(parseTripKind("critical\n"), TripPoint::Kind::critical);
    EXPECT_FALSE(parseTripKind("active\n"));
    EXPECT_FALSE(parseTripKind(""));
}

TEST(ThermalStateAt, IsTheWorstTripPointReached) {
    const std::vector<TripPoint> trips{
        {TripPoint::Kind::critical, 105000}, {TripPoint::Kind::passive, 90000}, {TripPoint::Kind::hot, 100000}};

    EXPECT_EQ(thermalStateAt(trips, 89999), 0);
    EXPECT_EQ(thermalStateAt(trips, 90000), 1);
    EXPECT_EQ(thermalStateAt(trips, 100000), 2);
    EXPECT_EQ(thermalStateAt(trips, 105000), 3);
    EXPECT_EQ(thermalStateAt({}, 200000), 0);
}

TEST(ReadThermalZones, ListsZonesByNumberWithTheTripPointsThatAreSet) {
    const auto zones = readThermalZones(test::fixture("hybrid-laptop"));

    ASSERT_EQ(zones.size(), 5U);
    EXPECT_EQ(zones[0].type, "acpitz");
    EXPECT_EQ(zones[1].type, "INT3400 Thermal");
    ASSERT_EQ(zones[2].trips.size(), 2U);
    EXPECT_EQ(zones[2].trips[0].temperature, 95000);
    EXPECT_EQ(zones[3].trips.size(), 1U);
}

TEST(ReadThermalZones, SortsByNumberAndSkipsDisabledAndUnreadableZones) {
    test::TemporaryTree tree;
    tree.write("/sys/class/thermal/thermal_zone10/type", "ten\n")
        .write("/sys/class/thermal/thermal_zone9/type", "nine\n")
        .write("/sys/class/thermal/thermal_zone3/type", "off\n")
        .write("/sys/class/thermal/thermal_zone3/mode", "disabled\n")
        .write("/sys/class/thermal/thermal_zone4/type", "\xFF\n")
        .write("/sys/class/thermal/thermal_zone5/type", std::string(100000, 'x'))
        .write("/sys/class/thermal/thermal_zoneX/type", "x\n")
        .write("/sys/class/thermal/cooling_device0/type", "Fan\n");

    const auto zones = readThermalZones(tree.root());

    ASSERT_EQ(zones.size(), 2U);
    EXPECT_EQ(zones[0].type, "nine");
    EXPECT_EQ(zones[1].type, "ten");
}

TEST(ReadThermalZones, LimitsTheNumberOfZones) {
    test::TemporaryTree tree;
    for (int number = 0; number < 200; ++number) {
        const auto zone = std::to_string(number);
        tree.write("/sys/class/thermal/thermal_zone" + zone + "/type", zone);
    }

    const auto zones = readThermalZones(tree.root());

    ASSERT_EQ(zones.size(), 128U);
    EXPECT_EQ(zones.back().type, "127");
}

}  // namespace
}  // namespace kestro
