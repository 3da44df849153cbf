#include "platform/linux/sensors/sensor_names.h"

#include <gtest/gtest.h>

namespace kestro {
namespace {

HwmonChip chip(std::string name) {
    const auto kind = chipKind(name);
    return {{}, {}, std::move(name), kind};
}

TEST(SensorName, TreatsProcessorChipsAsDieSensors) {
    EXPECT_EQ(sensorName(chip("coretemp"), 1, "Package id 0"), "CPU Package");
    EXPECT_EQ(sensorName(chip("coretemp"), 1, "Package id 1"), "CPU Package 1");
    EXPECT_EQ(sensorName(chip("coretemp"), 1, "Physical id 0"), "CPU Package");
    EXPECT_EQ(sensorName(chip("coretemp"), 2, "Core 0"), "CPU Core 0");
    EXPECT_EQ(sensorName(chip("k10temp"), 3, "Tccd1"), "CPU Tccd1");
    EXPECT_EQ(sensorName(chip("cpu_thermal"), 1, std::nullopt), "CPU temp1");
}

TEST(SensorName, KeepsTheControllersFullNames) {
    EXPECT_EQ(sensorName(chip("macsmc_hwmon"), 1, "NAND Flash Temperature"), "NAND Flash Temperature");
    EXPECT_EQ(sensorName(chip("macsmc_hwmon"), 9, std::nullopt), "macsmc_hwmon temp9");
}

TEST(SensorName, NamesOthersByChipAndLabel) {
    EXPECT_EQ(sensorName(chip("nvme"), 1, "Composite"), "nvme Composite");
    EXPECT_EQ(sensorName(chip("acpitz"), 1, std::nullopt), "acpitz temp1");
}

TEST(IsDieName, MatchesTheReadersKeywords) {
    EXPECT_TRUE(isDieName("PMU tdie1"));
    EXPECT_TRUE(isDieName("SoC die"));
    EXPECT_TRUE(isDieName("cpu-thermal"));
    EXPECT_FALSE(isDieName("CPU Battery"));
    EXPECT_FALSE(isDieName("nvme Composite"));
}

TEST(NameOutsideDie, RemovesEveryDieKeyword) {
    EXPECT_EQ(nameOutsideDie("thinkpad CPU"), "thinkpad processor");
    EXPECT_EQ(nameOutsideDie("board Socket CPU"), "board packageket processor");
    EXPECT_FALSE(isDieName(nameOutsideDie("cpu CPU Cpu soc SOC tdie")));
    EXPECT_EQ(nameOutsideDie("ttdie TTdie"), "die die");
    EXPECT_EQ(nameOutsideDie("nvme Composite"), "nvme Composite");
}

TEST(ZoneName, NamesThePackageZone) {
    EXPECT_EQ(zoneName("x86_pkg_temp"), "CPU Package");
    EXPECT_EQ(zoneName("cpu-thermal"), "cpu-thermal");
}

TEST(IsFloatingInput, RecognisesInputsThatBoardsLeaveOpen) {
    EXPECT_TRUE(isFloatingInput("AUXTIN3"));
    EXPECT_TRUE(isFloatingInput("CPUTIN"));
    EXPECT_FALSE(isFloatingInput("SYSTIN"));
}

TEST(IsGraphicsName, MatchesInAnyCase) {
    EXPECT_TRUE(isGraphicsName("GPU"));
    EXPECT_TRUE(isGraphicsName("gpu-thermal"));
    EXPECT_TRUE(isGraphicsName("Gpu Temperature"));
    EXPECT_FALSE(isGraphicsName("CPU"));
}

}  // namespace
}  // namespace kestro
