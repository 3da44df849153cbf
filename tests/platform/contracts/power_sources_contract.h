#pragma once

#include "core/platform/power_sources.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <variant>

namespace kestro {

/// What every PowerSources promises. A Subject has `port()`, on a laptop, and `removeBattery()`, after which it
/// has no power source.
template <typename Subject>
class PowerSourcesContract : public testing::Test {
protected:
    Subject subject;
};
TYPED_TEST_SUITE_P(PowerSourcesContract);

TYPED_TEST_P(PowerSourcesContract, DescribesTheBattery) {
    const auto descriptions = this->subject.port().copyDescriptions();

    ASSERT_TRUE(descriptions);
    ASSERT_FALSE(descriptions->empty());
    const auto& battery = descriptions->front();
    ASSERT_TRUE(battery);
    ASSERT_TRUE(battery->contains("Is Charging"));
    EXPECT_TRUE(std::holds_alternative<bool>(battery->find("Is Charging")->second));
    const auto state = std::get<std::string>(battery->find("Power Source State")->second);
    EXPECT_TRUE(state == "AC Power" || state == "Battery Power") << state;
}

TYPED_TEST_P(PowerSourcesContract, MeasuresChargeAndCapacityInTheSameUnit) {
    const auto descriptions = this->subject.port().copyDescriptions();

    ASSERT_TRUE(descriptions && !descriptions->empty() && descriptions->front());
    const auto& battery = *descriptions->front();
    const auto charge = std::get<std::int64_t>(battery.find("Current Capacity")->second);
    const auto capacity = std::get<std::int64_t>(battery.find("Max Capacity")->second);
    EXPECT_GE(charge, 0);
    EXPECT_GT(capacity, 0);
    EXPECT_LE(charge, capacity);
}

TYPED_TEST_P(PowerSourcesContract, ListsNothingWithoutABattery) {
    this->subject.removeBattery();

    const auto descriptions = this->subject.port().copyDescriptions();

    EXPECT_TRUE(!descriptions || descriptions->empty());
}

REGISTER_TYPED_TEST_SUITE_P(PowerSourcesContract, DescribesTheBattery, MeasuresChargeAndCapacityInTheSameUnit,
                            ListsNothingWithoutABattery);

}  // namespace kestro
