#include "platform/linux/battery/power_supply.h"

#include <gtest/gtest.h>

#include <string>

namespace kestro {
namespace {

using Kind = PowerSupply::Kind;
using Status = PowerSupply::Status;

PowerSupply battery(Status status) {
    PowerSupply supply;
    supply.kind = Kind::battery;
    supply.status = status;
    return supply;
}

PowerSupply charger(bool isOnline) {
    PowerSupply supply;
    supply.kind = Kind::mains;
    supply.isOnline = isOnline;
    return supply;
}

std::int64_t integer(const PowerSourceDescription& description, std::string_view key) {
    const auto found = description.find(key);
    return found != description.end() ? std::get<std::int64_t>(found->second) : -99;
}

std::string text(const PowerSourceDescription& description, std::string_view key) {
    const auto found = description.find(key);
    return found != description.end() ? std::get<std::string>(found->second) : "";
}

bool isCharging(const PowerSourceDescription& description) {
    return std::get<bool>(description.find("Is Charging")->second);
}

TEST(DescribeBatteries, ReportsChargeInMilliampereHours) {
    auto one = battery(Status::discharging);
    one.chargeNow = 4'249'000;
    one.chargeFull = 5'311'000;
    one.currentNow = 1'000'000;

    const auto description = describeBatteries({one, charger(false)});

    ASSERT_TRUE(description);
    EXPECT_EQ(integer(*description, "Current Capacity"), 4249);
    EXPECT_EQ(integer(*description, "Max Capacity"), 5311);
    EXPECT_EQ(integer(*description, "Time to Empty"), 254);
    EXPECT_EQ(text(*description, "Power Source State"), "Battery Power");
    EXPECT_FALSE(isCharging(*description));
}

TEST(DescribeBatteries, ConvertsEnergyByTheDesignVoltage) {
    auto one = battery(Status::charging);
    one.energyNow = 30'000'000;
    one.energyFull = 60'000'000;
    one.voltageMinDesign = 15'000'000;
    one.voltageNow = 16'000'000;

    const auto description = describeBatteries({charger(true), one});

    ASSERT_TRUE(description);
    EXPECT_EQ(integer(*description, "Current Capacity"), 2000);
    EXPECT_EQ(integer(*description, "Max Capacity"), 4000);
    EXPECT_EQ(text(*description, "Power Source State"), "AC Power");
    EXPECT_TRUE(isCharging(*description));
    EXPECT_FALSE(description->contains("Time to Empty"));
}

TEST(DescribeBatteries, ReportsPercentIfNothingElseIsKnown) {
    auto one = battery(Status::discharging);
    one.capacityPercent = 37;
    auto withoutVoltage = battery(Status::discharging);
    withoutVoltage.energyNow = 30;
    withoutVoltage.energyFull = 40;

    const auto description = describeBatteries({one});
    const auto other = describeBatteries({withoutVoltage});

    EXPECT_EQ(integer(*description, "Current Capacity"), 37);
    EXPECT_EQ(integer(*description, "Max Capacity"), 100);
    EXPECT_EQ(integer(*other, "Current Capacity"), 75);
    EXPECT_EQ(integer(*other, "Max Capacity"), 100);
}

TEST(DescribeBatteries, NeverReportsMoreThanFull) {
    auto one = battery(Status::full);
    one.chargeNow = 6'000'000;
    one.chargeFull = 5'000'000;
    auto other = battery(Status::full);
    other.capacityPercent = 104;

    EXPECT_EQ(integer(*describeBatteries({one}), "Current Capacity"), 5000);
    EXPECT_EQ(integer(*describeBatteries({other}), "Current Capacity"), 100);
}

TEST(DescribeBatteries, KeepsTheWholePercentageInMilliampereHours) {
    for (const std::int64_t full : {50'050'000, 53'120'000, 61'777'777}) {
        for (std::int64_t percent = 0; percent < 100; ++percent) {
            auto one = battery(Status::discharging);
            one.energyFull = full;
            one.energyNow = ((percent + 1) * full + 99) / 100 - 1;
            one.voltageMinDesign = 15'480'000;

            const auto description = describeBatteries({one});

            const auto current = integer(*description, "Current Capacity");
            EXPECT_EQ(100 * current / integer(*description, "Max Capacity"), percent) << full;
        }
    }
}

/// A MacBook Pro whose firmware returns the remaining charge in another byte order than macsmc expects
/// (github.com/AsahiLinux/linux/pull/542).
PowerSupply batteryWithSwappedBytes() {
    return parsePowerSupply(
        "POWER_SUPPLY_NAME=macsmc-battery\nPOWER_SUPPLY_TYPE=Battery\nPOWER_SUPPLY_STATUS=Discharging\n"
        "POWER_SUPPLY_CAPACITY=83\nPOWER_SUPPLY_VOLTAGE_NOW=12600000\nPOWER_SUPPLY_VOLTAGE_MIN_DESIGN=11400000\n"
        "POWER_SUPPLY_CURRENT_NOW=-1000000\nPOWER_SUPPLY_POWER_NOW=-12600000\nPOWER_SUPPLY_CHARGE_FULL=4998000\n"
        "POWER_SUPPLY_CHARGE_NOW=21267000\nPOWER_SUPPLY_ENERGY_FULL=56977200\nPOWER_SUPPLY_ENERGY_NOW="
        "242443800\n");
}

TEST(DescribeBatteries, BelievesOnlyThePercentageOfAGaugeThatHoldsMoreThanFull) {
    const auto captured = batteryWithSwappedBytes();
    auto chargeOnly = captured;
    chargeOnly.energyNow.reset();
    auto energyOnly = captured;
    energyOnly.chargeNow.reset();
    auto withoutVoltage = chargeOnly;
    withoutVoltage.voltageNow.reset();
    withoutVoltage.voltageMinDesign.reset();

    for (const auto& one : {captured, chargeOnly, energyOnly, withoutVoltage}) {
        const auto description = describeBatteries({one});

        EXPECT_EQ(integer(*description, "Current Capacity"), 83);
        EXPECT_EQ(integer(*description, "Max Capacity"), 100);
        EXPECT_EQ(integer(*description, "Time to Empty"), -1);
    }
}

TEST(DescribeBatteries, CombinesTheGaugeThatHoldsMoreThanFullByItsPercentage) {
    auto other = battery(Status::notCharging);
    other.energyNow = 20'000'000;
    other.energyFull = 80'000'000;

    EXPECT_EQ(integer(*describeBatteries({batteryWithSwappedBytes(), other}), "Current Capacity"), 54);
}

TEST(DescribeBatteries, IgnoresAStaleUsbPortWhileTheMainsAreOffline) {
    const auto mains = charger(false);
    auto port = charger(true);
    port.kind = Kind::port;
    const auto discharging = battery(Status::discharging);

    EXPECT_EQ(text(*describeBatteries({mains, port, discharging}), "Power Source State"), "Battery Power");
    EXPECT_EQ(text(*describeBatteries({port, discharging}), "Power Source State"), "AC Power");
    EXPECT_EQ(text(*describeBatteries({mains, port, battery(Status::charging)}), "Power Source State"),
              "AC Power");
}

TEST(DescribeBatteries, CombinesSeveralBatteriesByEnergy) {
    auto inner = battery(Status::notCharging);
    inner.energyNow = 20'000'000;
    inner.energyFull = 20'000'000;
    inner.powerNow = 0;
    auto outer = battery(Status::discharging);
    outer.energyNow = 20'000'000;
    outer.energyFull = 60'000'000;
    outer.powerNow = 10'000'000;

    const auto description = describeBatteries({inner, outer, charger(false)});

    ASSERT_TRUE(description);
    EXPECT_EQ(integer(*description, "Current Capacity"), 50);
    EXPECT_EQ(integer(*description, "Max Capacity"), 100);
    EXPECT_EQ(text(*description, "Power Source State"), "Battery Power");
    EXPECT_EQ(integer(*description, "Time to Empty"), 240);
}

TEST(DescribeBatteries, RunsOnBatteryWhileOneOfTwoRests) {
    for (const auto resting : {Status::notCharging, Status::full, Status::unknown}) {
        const auto description = describeBatteries({battery(resting), battery(Status::discharging)});

        EXPECT_EQ(text(*description, "Power Source State"), "Battery Power");
    }
}

TEST(DescribeBatteries, IsPluggedInWhileOneOfTwoCharges) {
    const auto description = describeBatteries({battery(Status::notCharging), battery(Status::charging)});

    EXPECT_EQ(text(*description, "Power Source State"), "AC Power");
    EXPECT_TRUE(isCharging(*description));
}

TEST(DescribeBatteries, FallsBackToTheMeanPercentageIfAnEnergyIsUnknown) {
    auto first = battery(Status::discharging);
    first.capacityPercent = 40;
    auto second = battery(Status::discharging);
    second.energyNow = 30;
    second.energyFull = 50;

    EXPECT_EQ(integer(*describeBatteries({first, second}), "Current Capacity"), 50);
}

TEST(DescribeBatteries, IsPluggedInWhileHeldAtALimit) {
    const auto description = describeBatteries({battery(Status::notCharging)});

    EXPECT_EQ(text(*description, "Power Source State"), "AC Power");
    EXPECT_FALSE(isCharging(*description));
}

TEST(DescribeBatteries, PrefersTheChargerOverTheBatteryStatus) {
    EXPECT_EQ(text(*describeBatteries({battery(Status::discharging), charger(true)}), "Power Source State"),
              "AC Power");
    EXPECT_EQ(text(*describeBatteries({battery(Status::full), charger(false)}), "Power Source State"),
              "Battery Power");
    EXPECT_EQ(text(*describeBatteries({battery(Status::notCharging), charger(false)}), "Power Source State"),
              "AC Power");
    EXPECT_EQ(text(*describeBatteries({battery(Status::full)}), "Power Source State"), "AC Power");
    EXPECT_EQ(text(*describeBatteries({battery(Status::unknown)}), "Power Source State"), "Battery Power");
}

TEST(DescribeBatteries, NeedsACurrentOrAGaugeForTheRemainingTime) {
    auto one = battery(Status::discharging);
    one.chargeNow = 4'000'000;
    one.chargeFull = 5'000'000;
    one.currentNow = 0;

    EXPECT_EQ(integer(*describeBatteries({one}), "Time to Empty"), -1);
    one.timeToEmptySeconds = 3661;
    EXPECT_EQ(integer(*describeBatteries({one}), "Time to Empty"), 61);
}

TEST(DescribeBatteries, RejectsARemainingTimeOfWeeks) {
    auto one = battery(Status::discharging);
    one.chargeNow = 10'080'000;
    one.currentNow = 60'000;
    EXPECT_EQ(integer(*describeBatteries({one}), "Time to Empty"), 7 * 24 * 60);

    one.currentNow = 59'994;
    EXPECT_EQ(integer(*describeBatteries({one}), "Time to Empty"), -1);
    one.timeToEmptySeconds = 9'000'000;
    EXPECT_EQ(integer(*describeBatteries({one}), "Time to Empty"), -1);
}

TEST(DescribeBatteries, ComputesTheTimeIfTheGaugeReportsNone) {
    constexpr std::int64_t unknownMinutes = 65535;
    auto one = battery(Status::discharging);
    one.timeToEmptySeconds = unknownMinutes * 60;
    one.chargeNow = 3'000'000;
    one.currentNow = 1'500'000;

    EXPECT_EQ(integer(*describeBatteries({one}), "Time to Empty"), 120);
}

TEST(DescribeBatteries, RecommendsServiceBelowFourFifthsOfTheDesign) {
    auto one = battery(Status::discharging);
    one.energyFull = 45'600'000;
    one.energyFullDesign = 57'000'000;
    EXPECT_EQ(text(*describeBatteries({one}), "BatteryHealth"), "Normal");

    one.energyFull = 45'599'999;
    EXPECT_EQ(text(*describeBatteries({one}), "BatteryHealth"), "Service Recommended");

    one.health = "Dead";
    EXPECT_EQ(text(*describeBatteries({one}), "BatteryHealth"), "Dead");
    one.energyFull.reset();
    one.health = "Good";
    EXPECT_EQ(text(*describeBatteries({one}), "BatteryHealth"), "Normal");
}

TEST(DescribeBatteries, IsAbsentForAnEmptyBayAMouseOrAChargerAlone) {
    auto empty = battery(Status::unknown);
    empty.isPresent = false;
    auto mouse = battery(Status::discharging);
    mouse.isDevice = true;

    EXPECT_FALSE(describeBatteries({empty, mouse, charger(true)}));
    EXPECT_FALSE(describeBatteries({}));
}

TEST(DescribeBatteries, ToleratesAbsurdValues) {
    const auto absurd = parsePowerSupply(
        "POWER_SUPPLY_TYPE=Battery\nPOWER_SUPPLY_STATUS=Discharging\nPOWER_SUPPLY_CHARGE_NOW=9999999999\n"
        "POWER_SUPPLY_CHARGE_FULL=1\nPOWER_SUPPLY_VOLTAGE_NOW=9999999999\nPOWER_SUPPLY_CURRENT_NOW=1\n"
        "POWER_SUPPLY_CAPACITY=-5\n");

    const auto one = describeBatteries({absurd});
    const auto many = describeBatteries(std::vector<PowerSupply>(32, absurd));

    ASSERT_TRUE(one && many);
    EXPECT_LE(integer(*one, "Current Capacity"), 100);
    EXPECT_LE(integer(*many, "Current Capacity"), 100);
    EXPECT_EQ(integer(*one, "Time to Empty"), -1);
    EXPECT_EQ(integer(*many, "Time to Empty"), -1);
}

}  // namespace
}  // namespace kestro
