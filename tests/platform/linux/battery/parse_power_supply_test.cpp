#include "platform/linux/battery/power_supply.h"

#include <gtest/gtest.h>

namespace kestro {
namespace {

using Kind = PowerSupply::Kind;
using Status = PowerSupply::Status;

TEST(ParsePowerSupply, ReadsTheLinesOfAnEventFile) {
    const auto supply = parsePowerSupply(
        "DEVTYPE=power_supply\nPOWER_SUPPLY_NAME=BAT0\nPOWER_SUPPLY_TYPE=Battery\nPOWER_SUPPLY_STATUS=Not "
        "charging\n"
        "POWER_SUPPLY_PRESENT=1\nPOWER_SUPPLY_CAPACITY=80\nPOWER_SUPPLY_CHARGE_NOW=4249000\n"
        "POWER_SUPPLY_CURRENT_NOW=-1250000\nPOWER_SUPPLY_HEALTH=Overheat\n");

    EXPECT_EQ(supply.kind, Kind::battery);
    EXPECT_EQ(supply.status, Status::notCharging);
    EXPECT_TRUE(supply.isPresent);
    EXPECT_EQ(supply.capacityPercent, 80);
    EXPECT_EQ(supply.chargeNow, 4249000);
    EXPECT_EQ(supply.currentNow, 1250000);
    EXPECT_FALSE(supply.energyNow);
    EXPECT_FALSE(supply.isOnline);
    EXPECT_EQ(supply.health, "Overheat");
}

TEST(ParsePowerSupply, SkipsMalformedLines) {
    const auto supply = parsePowerSupply(
        "POWER_SUPPLY_CAPACITY=\nPOWER_SUPPLY_CHARGE_NOW=99999999999999999999\nPOWER_SUPPLY_CHARGE_FULL=lots\n"
        "POWER_SUPPLY_ENERGY_NOW=-9223372036854775808\nPOWER_SUPPLY_HEALTH=\xFF\xFE\nPOWER_SUPPLY_STATUS\n=\n"
        "POWER_SUPPLY_STATUS=Elsewhere");

    EXPECT_FALSE(supply.capacityPercent);
    EXPECT_FALSE(supply.chargeNow);
    EXPECT_FALSE(supply.chargeFull);
    EXPECT_FALSE(supply.energyNow);
    EXPECT_EQ(supply.health, "");
    EXPECT_EQ(supply.status, Status::unknown);
    EXPECT_EQ(parsePowerSupply("").kind, Kind::other);
}

TEST(ParsePowerSupply, RejectsAmountsBeyondAnyBattery) {
    const auto largest =
        parsePowerSupply("POWER_SUPPLY_ENERGY_NOW=9999999999\nPOWER_SUPPLY_POWER_NOW=-9999999999\n");
    const auto absurd =
        parsePowerSupply("POWER_SUPPLY_ENERGY_NOW=10000000000\nPOWER_SUPPLY_POWER_NOW=-10000000000\n");

    EXPECT_EQ(largest.energyNow, 9'999'999'999);
    EXPECT_EQ(largest.powerNow, 9'999'999'999);
    EXPECT_FALSE(absurd.energyNow);
    EXPECT_FALSE(absurd.powerNow);
}

TEST(ParseSupplyKind, DistinguishesMainsFromPorts) {
    EXPECT_EQ(parseSupplyKind("Battery\n"), Kind::battery);
    EXPECT_EQ(parseSupplyKind("Mains\n"), Kind::mains);
    EXPECT_EQ(parseSupplyKind("USB_PD\n"), Kind::port);
    EXPECT_EQ(parseSupplyKind("Wireless\n"), Kind::port);
    EXPECT_EQ(parseSupplyKind("UPS\n"), Kind::other);
    EXPECT_EQ(parseSupplyKind(""), Kind::other);
}

}  // namespace
}  // namespace kestro
