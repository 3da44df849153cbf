#include "core/model/keep_awake_types.h"
#include "core/model/system_power_mode.h"

#include <gtest/gtest.h>

#include <optional>
#include <string_view>
#include <vector>

namespace kestro {
namespace {

TEST(KeepAwakeDuration, ListsItsLabelsAndLengthsInOrder) {
    struct Expected {
        KeepAwakeDuration value;
        std::string_view label;
        std::optional<double> seconds;
    };
    const std::vector<Expected> expected{
        {KeepAwakeDuration::indefinite, "Indefinitely", std::nullopt},
        {KeepAwakeDuration::minutes15, "15 Minutes", 900},
        {KeepAwakeDuration::minutes30, "30 Minutes", 1800},
        {KeepAwakeDuration::hours1, "1 Hour", 3600},
        {KeepAwakeDuration::hours2, "2 Hours", 7200},
        {KeepAwakeDuration::hours4, "4 Hours", 14400},
    };

    const auto cases = allCases<KeepAwakeDuration>();

    ASSERT_EQ(cases.size(), expected.size());
    for (std::size_t i = 0; i < cases.size(); ++i) {
        EXPECT_EQ(cases[i], expected[i].value);
        EXPECT_EQ(rawValue(cases[i]), expected[i].label);
        EXPECT_EQ(id(cases[i]), expected[i].label);
        EXPECT_EQ(seconds(cases[i]), expected[i].seconds);
        EXPECT_EQ(fromRawValue<KeepAwakeDuration>(expected[i].label), cases[i]);
    }
}

TEST(KeepAwakeTarget, ListsItsLabelsAndAssertionTypesInOrder) {
    const auto cases = allCases<KeepAwakeTarget>();

    ASSERT_EQ(cases.size(), 2U);
    EXPECT_EQ(rawValue(cases[0]), "Display & System");
    EXPECT_EQ(assertionType(cases[0]), "PreventUserIdleDisplaySleep");
    EXPECT_EQ(rawValue(cases[1]), "System Only (Display May Sleep)");
    EXPECT_EQ(assertionType(cases[1]), "PreventUserIdleSystemSleep");
    EXPECT_EQ(fromRawValue<KeepAwakeTarget>("systemOnly"), std::nullopt);
}

TEST(SystemPowerMode, ListsItsTextsAndToolValuesInOrder) {
    struct Expected {
        std::string_view label, shortTag, description, iconName, toolValue;
    };
    const std::vector<Expected> expected{
        {"Low Power", "LOW", "Reduces energy usage to increase battery life and quiet fans", "leaf.fill", "1"},
        {"Balanced (Automatic)", "AUTO", "Dynamically optimizes CPU/GPU frequencies and thermal envelopes",
         "gauge.with.needle", "0"},
        {"High Power", "HIGH", "Optimizes cooling and clocks for sustained intensive workflows",
         "bolt.batteryblock.fill", "2"},
    };

    const auto modes = allCases<SystemPowerMode>();

    ASSERT_EQ(modes.size(), expected.size());
    for (std::size_t i = 0; i < modes.size(); ++i) {
        EXPECT_EQ(rawValue(modes[i]), expected[i].label);
        EXPECT_EQ(shortTag(modes[i]), expected[i].shortTag);
        EXPECT_EQ(description(modes[i]), expected[i].description);
        EXPECT_EQ(iconName(modes[i]), expected[i].iconName);
        EXPECT_EQ(toolValue(modes[i]), expected[i].toolValue);
        EXPECT_EQ(fromRawValue<SystemPowerMode>(expected[i].label), modes[i]);
    }
}

}  // namespace
}  // namespace kestro
