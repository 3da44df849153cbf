#include "platform/linux/battery/linux_power_sources.h"

#include "tests/platform/linux/support.h"

#include <gtest/gtest.h>

#include <string>

namespace kestro {
namespace {

using test::fixture;
using test::ManualClock;
using test::TemporaryTree;
using namespace std::chrono_literals;

using Descriptions = std::vector<std::optional<PowerSourceDescription>>;

std::optional<Descriptions> descriptions(const std::string& root) {
    ManualClock clock;
    return LinuxPowerSources(clock, root).copyDescriptions();
}

TEST(LinuxPowerSources, DescribesALaptopOnItsBattery) {
    EXPECT_EQ(descriptions(fixture("hybrid-laptop")),
              (Descriptions{PowerSourceDescription{{"Is Charging", false},
                                                   {"Power Source State", std::string("Battery Power")},
                                                   {"Current Capacity", std::int64_t{1946}},
                                                   {"Max Capacity", std::int64_t{3432}},
                                                   {"BatteryHealth", std::string("Normal")},
                                                   {"Time to Empty", std::int64_t{30120000LL * 60 / 9876000}}}}));
}

TEST(LinuxPowerSources, DescribesALaptopHeldAtItsChargeLimit) {
    EXPECT_EQ(descriptions(fixture("apple-laptop")),
              (Descriptions{PowerSourceDescription{{"Is Charging", false},
                                                   {"Power Source State", std::string("AC Power")},
                                                   {"Current Capacity", std::int64_t{4249}},
                                                   {"Max Capacity", std::int64_t{5311}},
                                                   {"BatteryHealth", std::string("Normal")}}}));
}

TEST(LinuxPowerSources, IsEmptyIfTheMachineHasNoBattery) {
    EXPECT_EQ(descriptions(fixture("amd-desktop")), Descriptions{});
    EXPECT_EQ(descriptions(fixture("vm")), Descriptions{});
}

TEST(LinuxPowerSources, IsEmptyWithOnlyACharger) {
    TemporaryTree tree;
    tree.write("/sys/class/power_supply/AC/type", "Mains\n")
        .write("/sys/class/power_supply/AC/uevent", "POWER_SUPPLY_ONLINE=1\n");

    EXPECT_EQ(descriptions(tree.root()), Descriptions{});
}

TEST(LinuxPowerSources, PublishesNothingIfPowerSuppliesAreUnsupported) {
    EXPECT_FALSE(descriptions(fixture("container")));
    EXPECT_FALSE(descriptions(fixture("no-such-machine")));
}

TEST(LinuxPowerSources, DetectsThatPowerSuppliesBecameSupported) {
    ManualClock clock;
    TemporaryTree tree;
    LinuxPowerSources sources(clock, tree.root());
    ASSERT_FALSE(sources.copyDescriptions());

    tree.write("/sys/class/power_supply/AC/type", "Mains\n");
    clock.advance(10s);
    EXPECT_EQ(sources.copyDescriptions(), Descriptions{});

    tree.remove("/sys/class/power_supply");
    clock.advance(10s);
    EXPECT_FALSE(sources.copyDescriptions());
}

TEST(LinuxPowerSources, ReadsTheIndividualFilesWhenTheEventFileFails) {
    TemporaryTree tree;
    tree.write("/sys/class/power_supply/BAT1/type", "Battery\n")
        .write("/sys/class/power_supply/BAT1/status", "Charging\n")
        .write("/sys/class/power_supply/BAT1/capacity", "42\n");

    const auto result = descriptions(tree.root());

    ASSERT_TRUE(result && result->size() == 1 && result->front());
    EXPECT_EQ(result->front()->at("Current Capacity"), PowerSourceValue(std::int64_t{42}));
    EXPECT_EQ(result->front()->at("Is Charging"), PowerSourceValue(true));
}

TEST(LinuxPowerSources, RecognisesABatteryOfAnOlderKernelByItsTypeFile) {
    TemporaryTree tree;
    tree.write("/sys/class/power_supply/BAT0/type", "Battery\n")
        .write("/sys/class/power_supply/BAT0/uevent", "POWER_SUPPLY_STATUS=Full\nPOWER_SUPPLY_CAPACITY=100\n");

    EXPECT_EQ(descriptions(tree.root())->size(), 1U);
}

TEST(LinuxPowerSources, DetectsABatteryBeingInsertedAndRemoved) {
    ManualClock clock;
    TemporaryTree tree;
    tree.copyFrom("vm");
    LinuxPowerSources sources(clock, tree.root());
    ASSERT_EQ(sources.copyDescriptions(), Descriptions{});

    tree.write("/sys/class/power_supply/BAT0/type", "Battery\n")
        .write("/sys/class/power_supply/BAT0/uevent",
               "POWER_SUPPLY_STATUS=Discharging\nPOWER_SUPPLY_CAPACITY=50\n");
    clock.advance(10s);
    EXPECT_EQ(sources.copyDescriptions()->size(), 1U);

    tree.remove("/sys/class/power_supply/BAT0");
    clock.advance(10s);
    EXPECT_EQ(sources.copyDescriptions(), Descriptions{});
}

TEST(LinuxPowerSources, ReadsNewValuesOnEveryCall) {
    ManualClock clock;
    TemporaryTree tree;
    tree.copyFrom("hybrid-laptop");
    LinuxPowerSources sources(clock, tree.root());
    ASSERT_TRUE(sources.copyDescriptions());

    tree.write("/sys/class/power_supply/AC/uevent", "POWER_SUPPLY_ONLINE=1\n");

    EXPECT_EQ(sources.copyDescriptions()->front()->at("Power Source State"),
              PowerSourceValue(std::string("AC Power")));
}

TEST(LinuxPowerSources, TreatsAnUnreadableBatteryAsAbsent) {
    TemporaryTree tree;
    tree.write("/sys/class/power_supply/BAT0/type", "Battery\n");
    EXPECT_EQ(descriptions(tree.root()), Descriptions{});

    tree.write("/sys/class/power_supply/BAT0/uevent", std::string(100000, 'x'));
    EXPECT_EQ(descriptions(tree.root()), Descriptions{});
}

}  // namespace
}  // namespace kestro
