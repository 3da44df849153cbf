#include "core/telemetry/power_reader.h"

#include "platform/simulated/simulated_power_sources.h"

#include <gtest/gtest.h>

namespace kestro {
namespace {

class PowerReaderTest : public testing::Test {
protected:
    PowerReaderTest() { sources.descriptions = {PowerSourceDescription{}}; }

    void describe(const std::string& key, PowerSourceValue value) {
        sources.descriptions.front()->insert_or_assign(key, std::move(value));
    }

    PowerTelemetry read() { return PowerReader(sources).read(); }

    SimulatedPowerSources sources;
};

TEST_F(PowerReaderTest, ReadsADescription) {
    describe("Is Charging", true);
    describe("Power Source State", std::string("AC Power"));
    describe("Current Capacity", std::int64_t{3000});
    describe("Max Capacity", std::int64_t{4000});
    describe("BatteryHealth", std::string("Good"));
    describe("Time to Empty", std::int64_t{125});

    EXPECT_EQ(read(), (PowerTelemetry{true, true, true, 3000, 4000, 75.0, "Good", 125}));
}

TEST_F(PowerReaderTest, UsesTheDefaultForEveryMissingKey) {
    EXPECT_EQ(read(), (PowerTelemetry{true, false, false, 100, 100, 100.0, "Normal", std::nullopt}));
}

TEST_F(PowerReaderTest, UsesTheDefaultForEveryKeyOfAnotherType) {
    describe("Is Charging", std::int64_t{1});
    describe("Power Source State", true);
    describe("Current Capacity", std::string("50"));
    describe("Max Capacity", true);
    describe("BatteryHealth", std::int64_t{1});
    describe("Time to Empty", std::string("90"));

    EXPECT_EQ(read(), (PowerTelemetry{true, false, false, 100, 100, 100.0, "Normal", std::nullopt}));
}

TEST_F(PowerReaderTest, TreatsTheChargeAsPercentWithoutAMaximum) {
    describe("Current Capacity", std::int64_t{57});

    const PowerTelemetry record = read();

    EXPECT_DOUBLE_EQ(record.percentage, 57);
    EXPECT_EQ(record.maxCapacity, 100);
}

TEST_F(PowerReaderTest, ReadsFullWhenTheMaximumIsBelowOne) {
    describe("Current Capacity", std::int64_t{57});
    describe("Max Capacity", std::int64_t{0});

    EXPECT_EQ(read().percentage, 100.0);
    EXPECT_EQ(read().maxCapacity, 0);
    describe("Max Capacity", std::int64_t{-4});
    EXPECT_EQ(read().percentage, 100.0);
}

TEST_F(PowerReaderTest, ReportsEveryWholePercentExactly) {
    describe("Max Capacity", std::int64_t{100});
    for (std::int64_t percent = 0; percent <= 100; ++percent) {
        describe("Current Capacity", percent);
        EXPECT_EQ(read().percentage, static_cast<double>(percent));
    }
}

TEST_F(PowerReaderTest, IsPluggedInOnlyOnAcPower) {
    for (const char* state : {"Battery Power", "Off Line", "ac power", "AC Power ", ""}) {
        describe("Power Source State", std::string(state));
        EXPECT_FALSE(read().isPluggedIn) << state;
    }
    describe("Power Source State", std::string("AC Power"));
    EXPECT_TRUE(read().isPluggedIn);
}

TEST_F(PowerReaderTest, ReportsNoTimeWhileThePlatformEstimates) {
    describe("Current Capacity", std::int64_t{57});
    for (const std::int64_t minutes : {-1, 0}) {
        describe("Time to Empty", minutes);
        EXPECT_FALSE(read().timeRemainingMinutes);
        EXPECT_EQ(read().statusDescription(), "Discharging (57%)");
    }
    describe("Time to Empty", std::int64_t{1});
    EXPECT_EQ(read().timeRemainingMinutes, 1);
}

TEST_F(PowerReaderTest, UsesTheFirstSourceThatHasADescription) {
    sources.descriptions = {std::nullopt, PowerSourceDescription{{"Current Capacity", std::int64_t{20}}},
                            PowerSourceDescription{{"Current Capacity", std::int64_t{90}}}};

    EXPECT_EQ(read().currentCapacity, 20);
}

TEST_F(PowerReaderTest, HasNoBatteryWithoutSourcesOrDescriptions) {
    const PowerTelemetry none{false, false, true, 100, 100, 100.0, "Normal", std::nullopt};

    sources.descriptions = {std::nullopt, std::nullopt};
    EXPECT_EQ(read(), none);
    sources.descriptions = {};
    EXPECT_EQ(read(), none);
    sources.setBattery(50, true);
    sources.failure.always();
    EXPECT_EQ(read(), none);
}

}  // namespace
}  // namespace kestro
