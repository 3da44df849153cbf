#include "platform/linux/sensors/die_rank.h"

#include <gtest/gtest.h>

#include <string>

namespace kestro {
namespace {

DieRank rankOf(std::string chip, std::optional<std::string> label = std::nullopt) {
    const auto kind = chipKind(chip);
    return inputDieRank({{}, {}, std::move(chip), kind, {}}, label);
}

TEST(ZoneDieRank, PrefersZonesNamedAfterTheWholeProcessor) {
    for (const auto* type : {"x86_pkg_temp", "cpu-thermal", "CPU-therm", "soc_dts0", "soc-thermal", "TCPU", "B0D4",
                             "bcm2835_thermal", "cpu0_0_top_thermal"}) {
        EXPECT_EQ(zoneDieRank(type), DieRank::processorZone) << type;
    }
}

TEST(ZoneDieRank, KnowsThePartsOfAProcessor) {
    for (const auto* type : {"package-thermal", "bigcore0-thermal", "littlecore_thermal", "cluster1-thermal",
                             "thermal_cluster0", "BIG", "LITTLE", "mpu-thermal", "cls0", "core_thermal"}) {
        EXPECT_EQ(zoneDieRank(type), DieRank::coreZone) << type;
    }
}

TEST(ZoneDieRank, AcceptsZonesWithoutAMeaningAsALastResort) {
    for (const auto* type : {"thermal_0", "tsens_tz_sensor12", "imx_thermal_zone", "sensor1-thermal",
                             "main0-thermal", "f10e4078_thermal"}) {
        EXPECT_EQ(zoneDieRank(type), DieRank::unnamedZone) << type;
    }
}

TEST(ZoneDieRank, ExcludesTheRestOfTheMachine) {
    for (const auto* type : {"gpu-thermal", "npu_thermal", "ddr-cluster5-thermal", "center-thermal", "PMIC-Die",
                             "battery", "iwlwifi_1", "pch_cannonlake", "INT3400 Thermal", "SEN1", "pm8998_tz",
                             "thermal-fan-est", "xo_therm", "skin-temp-thermal", "modem-thermal"}) {
        EXPECT_EQ(zoneDieRank(type), DieRank::none) << type;
    }
    EXPECT_EQ(zoneDieRank("acpitz"), DieRank::firmwareZone);
}

TEST(InputDieRank, KnowsTheInputsLabelledAsTheProcessor) {
    EXPECT_EQ(rankOf("coretemp", "Core 0"), DieRank::processorChip);
    EXPECT_EQ(rankOf("thinkpad", "CPU"), DieRank::processorLabel);
    EXPECT_EQ(rankOf("cros_ec", "cpu_f75303@4d"), DieRank::processorLabel);
    EXPECT_EQ(rankOf("nct6798", "PECI Agent 0"), DieRank::processorLabel);
    EXPECT_EQ(rankOf("nct6799", "TSI0_TEMP"), DieRank::processorLabel);
    EXPECT_EQ(rankOf("asus_wmi_sensors", "CPU Temperature"), DieRank::processorLabel);
    EXPECT_EQ(rankOf("scpi_sensors", "SOC"), DieRank::processorLabel);
    EXPECT_EQ(rankOf("applesmc", "TC0D"), DieRank::processorLabel);
}

TEST(InputDieRank, ExcludesWhatIsBesideTheProcessor) {
    EXPECT_EQ(rankOf("asus_wmi_sensors", "CPU Socket Temperature"), DieRank::none);
    EXPECT_EQ(rankOf("nct6775", "PECI Agent 0 Calibration"), DieRank::none);
    EXPECT_EQ(rankOf("nct6683", "PECI DIMM 0"), DieRank::none);
    EXPECT_EQ(rankOf("nct6798", "SYSTIN"), DieRank::none);
    EXPECT_EQ(rankOf("amdgpu", "edge"), DieRank::none);
    EXPECT_EQ(rankOf("nvme", "Composite"), DieRank::none);
    EXPECT_EQ(rankOf("applesmc", "TCGC"), DieRank::controller);
}

TEST(InputDieRank, LetsAControllersOtherInputsRepresentTheDieExceptBatteryAndRadio) {
    EXPECT_EQ(rankOf("macsmc_hwmon", "NAND Flash Temperature"), DieRank::controller);
    EXPECT_EQ(rankOf("macsmc_hwmon", "Charge Regulator Temp"), DieRank::controller);
    EXPECT_EQ(rankOf("macsmc_hwmon", "Battery Hotspot"), DieRank::none);
    EXPECT_EQ(rankOf("macsmc_hwmon", "WiFi/BT Module Temp"), DieRank::none);
    EXPECT_EQ(rankOf("applesmc", "TB0T"), DieRank::none);
    EXPECT_EQ(rankOf("applesmc", "TW0P"), DieRank::none);
    EXPECT_EQ(rankOf("thinkpad"), DieRank::controller);
    EXPECT_EQ(rankOf("thinkpad", "GPU"), DieRank::none);
}

}  // namespace
}  // namespace kestro
