#include "platform/linux/machine/memory_pressure.h"

#include <gtest/gtest.h>

#include <string>

namespace kestro {
namespace {

TEST(ParsePressureStall, ReadsTheTenSecondShares) {
    const auto stall = parsePressureStall(
        "some avg10=6.40 avg60=1.00 avg300=0.00 total=1\nfull avg10=0.25 avg60=0.00 avg300=0.00 total=2\n");

    ASSERT_TRUE(stall);
    EXPECT_EQ(stall->some, 6.4);
    EXPECT_EQ(stall->full, 0.25);
}

TEST(ParsePressureStall, ToleratesAMissingSecondLine) {
    const auto stall = parsePressureStall("some avg10=3.00 avg60=1.00 avg300=0.00 total=1\n");

    ASSERT_TRUE(stall);
    EXPECT_EQ(stall->full, 0);
}

TEST(ParsePressureStall, IsAbsentWithoutAShare) {
    EXPECT_FALSE(parsePressureStall(""));
    EXPECT_FALSE(parsePressureStall("some\n"));
    EXPECT_FALSE(parsePressureStall("some avg10= avg60=1\n"));
    EXPECT_FALSE(parsePressureStall("some avg10=nan\n"));
    EXPECT_FALSE(parsePressureStall("some avg10=-1.00\n"));
    EXPECT_FALSE(parsePressureStall("full avg10=1.00\n"));
    EXPECT_FALSE(parsePressureStall("\xFF\xFE\n"));
}

TEST(PressureLevel, FollowsTheStalls) {
    EXPECT_EQ(pressureLevel(PressureStall{4.99, 0.99}), pressureNormal);
    EXPECT_EQ(pressureLevel(PressureStall{5, 0}), pressureWarning);
    EXPECT_EQ(pressureLevel(PressureStall{0, 1}), pressureWarning);
    EXPECT_EQ(pressureLevel(PressureStall{19.99, 4.99}), pressureWarning);
    EXPECT_EQ(pressureLevel(PressureStall{20, 0}), pressureCritical);
    EXPECT_EQ(pressureLevel(PressureStall{0, 5}), pressureCritical);
}

TEST(PressureLevel, FallsBackToTheAvailableMemory) {
    EXPECT_EQ(pressureLevel(MemoryInfo{.total = 1000, .available = 100}, 0), pressureNormal);
    EXPECT_EQ(pressureLevel(MemoryInfo{.total = 1000, .available = 99}, 0), pressureWarning);
    EXPECT_EQ(pressureLevel(MemoryInfo{.total = 1000, .available = 40}, 0), pressureWarning);
    EXPECT_EQ(pressureLevel(MemoryInfo{.total = 1000, .available = 39}, 0), pressureCritical);
    EXPECT_EQ(pressureLevel(MemoryInfo{.total = 1000, .available = 39}, 1), pressureWarning);
    EXPECT_EQ(pressureLevel(MemoryInfo{.total = 1000, .available = 39}, 61), pressureNormal);
}

}  // namespace
}  // namespace kestro
