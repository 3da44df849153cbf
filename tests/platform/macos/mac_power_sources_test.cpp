#include "platform/macos/mac_power_sources.h"

#include "core/telemetry/power_reader.h"
#include "tests/platform/macos/failing_calls.h"
#include "tests/platform/macos/fakes/fake_mac.h"

#include <gtest/gtest.h>

#include <string>

namespace kestro {
namespace {

using fakes::FakeDictionary;
using fakes::FakeMac;
using fakes::FakeValue;
using fakes::OddObject;
using fakes::UnpairedSurrogate;

FakeDictionary battery() {
    return {{"Is Charging", {true}},
            {"Power Source State", {std::string("AC Power")}},
            {"Current Capacity", {std::int64_t{87}}},
            {"Max Capacity", {std::int64_t{100}}},
            {"BatteryHealth", {std::string("Good")}},
            {"Time to Empty", {std::int64_t{-1}}},
            {"Name", {std::string("InternalBattery-0")}}};
}

TEST(MacPowerSources, TranslatesTheKeysInUse) {
    FakeMac mac;
    mac.ioKit.powerSources = {battery()};
    MacPowerSources sources;

    const auto descriptions = sources.copyDescriptions();

    ASSERT_TRUE(descriptions);
    ASSERT_EQ(descriptions->size(), 1U);
    const PowerSourceDescription expected{{"Is Charging", true},
                                          {"Power Source State", std::string("AC Power")},
                                          {"Current Capacity", std::int64_t{87}},
                                          {"Max Capacity", std::int64_t{100}},
                                          {"BatteryHealth", std::string("Good")},
                                          {"Time to Empty", std::int64_t{-1}}};
    EXPECT_EQ(descriptions->front(), expected);
}

TEST(MacPowerSources, OmitsValuesOfOtherKinds) {
    FakeMac mac;
    mac.ioKit.powerSources = {FakeDictionary{{"Is Charging", {OddObject{}}},
                                             {"Power Source State", {UnpairedSurrogate{}}},
                                             {"Current Capacity", {87.5}},
                                             {"Max Capacity", {std::int64_t{100}}}}};
    MacPowerSources sources;

    const auto descriptions = sources.copyDescriptions();

    ASSERT_TRUE(descriptions);
    EXPECT_EQ(descriptions->at(0), (PowerSourceDescription{{"Max Capacity", std::int64_t{100}}}));
}

TEST(MacPowerSources, KeepsThePlaceOfASourceWithoutDescription) {
    FakeMac mac;
    mac.ioKit.powerSources = {std::nullopt, battery()};
    MacPowerSources sources;

    const auto descriptions = sources.copyDescriptions();

    ASSERT_TRUE(descriptions);
    ASSERT_EQ(descriptions->size(), 2U);
    EXPECT_FALSE(descriptions->at(0));
    EXPECT_TRUE(descriptions->at(1));
}

TEST(MacPowerSources, DistinguishesNoSourcesFromNoList) {
    FakeMac mac;
    MacPowerSources sources;

    EXPECT_FALSE(sources.copyDescriptions());
    mac.ioKit.powerSources.emplace();
    EXPECT_TRUE(sources.copyDescriptions().value().empty());
    mac.ioKit.listsSources = false;
    EXPECT_FALSE(sources.copyDescriptions());
}

TEST(MacPowerSources, HoldsNothingWhenCallsFail) {
    useWithFailingCalls(
        [](FakeMac& mac) {
            mac.ioKit.powerSources = {std::nullopt, battery(), battery()};
        },
        [](FakeMac&) {
            MacPowerSources sources;
            sources.copyDescriptions();
        });
}

TEST(MacPowerSources, ReadAsNoBatteryWhenEverythingFails) {
    FakeMac mac;
    mac.ioKit.powerSources = {battery()};
    mac.everythingFails = true;
    MacPowerSources sources;

    EXPECT_FALSE(PowerReader(sources).read().hasBattery);
}

}  // namespace
}  // namespace kestro
