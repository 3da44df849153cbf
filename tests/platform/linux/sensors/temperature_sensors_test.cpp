#include "platform/linux/sensors/temperature_sensors.h"

#include "tests/platform/linux/sensors/sensor_readings.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kestro {
namespace {

using test::fixture;
using test::Sensors;
using test::TemporaryTree;
using testing::ElementsAre;
using testing::Pair;
using testing::UnorderedElementsAre;
using namespace std::chrono_literals;

TEST(TemperatureSensors, TakesAnAppleControllersHottestInputForTheDie) {
    Sensors sensors(fixture("apple-laptop"));

    EXPECT_THAT(sensors.readings(),
                UnorderedElementsAre(Pair("NAND Flash Temperature", 34.0), Pair("Battery Hotspot", 31.9),
                                     Pair("CPU Charge Regulator Temp", 36.0), Pair("WiFi/BT Module Temp", 38.2),
                                     Pair("nvme Composite", 33.85), Pair("Battery macsmc-battery", 31.2)));
}

TEST(TemperatureSensors, FollowsTheAppleControllersHottestInput) {
    TemporaryTree tree;
    tree.copyFrom("apple-laptop");
    Sensors sensors(tree.root());
    ASSERT_TRUE(sensors.readings().contains("CPU Charge Regulator Temp"));

    tree.write("/sys/class/hwmon/hwmon2/temp1_input", "52000\n");

    const auto readings = sensors.readings();
    EXPECT_EQ(readings.at("CPU NAND Flash Temperature"), 52.0);
    EXPECT_EQ(readings.at("Charge Regulator Temp"), 36.0);
}

TEST(TemperatureSensors, ReadsAnIntelMacsDieFromItsProcessorAndItsBatteryFromItsController) {
    Sensors sensors(fixture("intel-mac"));

    const auto readings = sensors.readings();

    EXPECT_EQ(readings.at("CPU Package"), 57.0);
    EXPECT_EQ(readings.at("TC0P"), 49.25);
    EXPECT_EQ(readings.at("Battery TB0T"), 30.25);
    EXPECT_FALSE(readings.contains("CPU TC0P"));
}

TEST(TemperatureSensors, ReadsAnIntelMacsDieFromItsControllerWithoutItsProcessorsChip) {
    TemporaryTree tree;
    tree.copyFrom("intel-mac").remove("/sys/class/hwmon/hwmon3");
    Sensors sensors(tree.root());

    const auto readings = sensors.readings();

    EXPECT_EQ(readings.at("CPU TC0P"), 49.25);
    EXPECT_EQ(readings.at("CPU TC1C"), 55.0);
    EXPECT_FALSE(readings.contains("CPU TG0P"));
}

TEST(TemperatureSensors, ExcludesTheControllersProcessorSensorFromTheDie) {
    Sensors sensors(fixture("hybrid-laptop"));

    const auto readings = sensors.readings();

    EXPECT_EQ(readings.at("CPU Package"), 61.0);
    EXPECT_EQ(readings.at("thinkpad processor"), 61.0);
    EXPECT_FALSE(readings.contains("thinkpad CPU"));
    EXPECT_FALSE(readings.contains("thinkpad GPU"));
}

TEST(TemperatureSensors, OmitsTheControlTemperatureIfTheDieHasASensor) {
    TemporaryTree tree;
    tree.write("/sys/class/hwmon/hwmon0/name", "k10temp\n")
        .write("/sys/class/hwmon/hwmon0/temp1_input", "77000\n")
        .write("/sys/class/hwmon/hwmon0/temp1_label", "Tctl\n")
        .write("/sys/class/hwmon/hwmon0/temp2_input", "50000\n")
        .write("/sys/class/hwmon/hwmon0/temp2_label", "Tdie\n");

    EXPECT_THAT(Sensors(tree.root()).readings(), ElementsAre(Pair("CPU Tdie", 50.0)));
}

TEST(TemperatureSensors, UsesThermalZonesOnlyWithoutADieSensorInHwmon) {
    TemporaryTree tree;
    tree.write("/sys/class/hwmon/hwmon0/name", "acpitz\n")
        .write("/sys/class/hwmon/hwmon0/temp1_input", "27800\n")
        .write("/sys/class/thermal/thermal_zone0/type", "acpitz\n")
        .write("/sys/class/thermal/thermal_zone0/temp", "27800\n")
        .write("/sys/class/thermal/thermal_zone1/type", "x86_pkg_temp\n")
        .write("/sys/class/thermal/thermal_zone1/temp", "55000\n")
        .write("/sys/class/thermal/thermal_zone2/type", "INT3400 Thermal\n")
        .write("/sys/class/thermal/thermal_zone2/temp", "20000\n");
    EXPECT_THAT(Sensors(tree.root()).names(), ElementsAre("CPU Package", "acpitz temp1"));

    tree.write("/sys/class/hwmon/hwmon1/name", "coretemp\n")
        .write("/sys/class/hwmon/hwmon1/temp1_input", "55000\n");

    EXPECT_THAT(Sensors(tree.root()).names(), ElementsAre("CPU temp1", "acpitz temp1"));
}

TEST(TemperatureSensors, FallsBackToAcpiForTheProcessor) {
    TemporaryTree tree;
    tree.write("/sys/class/thermal/thermal_zone0/type", "acpitz\n")
        .write("/sys/class/thermal/thermal_zone0/temp", "42000\n");

    EXPECT_THAT(Sensors(tree.root()).readings(), ElementsAre(Pair("CPU acpitz", 42.0)));
}

TEST(TemperatureSensors, DoesNotTakeAConstantOfTheFirmwareForTheProcessor) {
    TemporaryTree tree;
    tree.write("/sys/class/thermal/thermal_zone0/type", "acpitz\n")
        .write("/sys/class/thermal/thermal_zone0/temp", "16800\n");
    Sensors sensors(tree.root());
    EXPECT_THAT(sensors.names(), ElementsAre("acpitz"));

    tree.write("/sys/class/thermal/thermal_zone0/temp", "17800\n");
    sensors.readings();
    sensors.clock.advance(10s);

    EXPECT_THAT(sensors.names(), ElementsAre("CPU acpitz"));
}

TEST(TemperatureSensors, DropsAnAcpiZoneThatDoesNotMoveForMinutes) {
    TemporaryTree tree;
    tree.write("/sys/class/thermal/thermal_zone0/type", "acpitz\n")
        .write("/sys/class/thermal/thermal_zone0/temp", "42000\n");
    Sensors sensors(tree.root());
    for (int sample = 0; sample < 610; ++sample) {
        sensors.readings();
        sensors.clock.advance(1s);
    }

    EXPECT_THAT(sensors.names(), ElementsAre("acpitz"));
}

TEST(TemperatureSensors, PrefersTheProcessorsZoneToItsPartsAndTheirsToTheControllersLabel) {
    TemporaryTree tree;
    tree.write("/sys/class/hwmon/hwmon0/name", "cros_ec\n")
        .write("/sys/class/hwmon/hwmon0/temp1_input", "41000\n")
        .write("/sys/class/hwmon/hwmon0/temp1_label", "cpu@4c\n");
    EXPECT_THAT(Sensors(tree.root()).names(), ElementsAre("cros_ec cpu@4c"));

    tree.write("/sys/class/thermal/thermal_zone0/type", "package-thermal\n")
        .write("/sys/class/thermal/thermal_zone0/temp", "43000\n");
    EXPECT_THAT(Sensors(tree.root()).names(), ElementsAre("CPU package-thermal", "cros_ec processor@4c"));

    tree.write("/sys/class/thermal/thermal_zone1/type", "soc-thermal\n")
        .write("/sys/class/thermal/thermal_zone1/temp", "44000\n");
    EXPECT_THAT(Sensors(tree.root()).names(),
                ElementsAre("soc-thermal", "cros_ec processor@4c", "package-thermal"));
}

TEST(TemperatureSensors, FallsBackWhenTheProcessorsChipMeasuresNothing) {
    TemporaryTree tree;
    tree.write("/sys/class/hwmon/hwmon0/name", "k10temp\n")
        .write("/sys/class/hwmon/hwmon0/temp1_input", "0\n")
        .write("/sys/class/hwmon/hwmon1/name", "thinkpad\n")
        .write("/sys/class/hwmon/hwmon1/temp1_input", "47000\n")
        .write("/sys/class/hwmon/hwmon1/temp1_label", "CPU\n");
    Sensors sensors(tree.root());
    EXPECT_THAT(sensors.names(), ElementsAre("thinkpad CPU", "processor temp1"));

    tree.write("/sys/class/hwmon/hwmon0/temp1_input", "48000\n");
    sensors.readings();
    sensors.clock.advance(10s);

    EXPECT_EQ(sensors.readings().at("CPU temp1"), 48.0);
    EXPECT_EQ(sensors.readings().at("thinkpad processor"), 47.0);
}

/// A PC whose mainboard chip has an open input.
TemporaryTree& writeOpenInput(TemporaryTree& tree, const char* reading) {
    return tree.write("/sys/class/hwmon/hwmon0/name", "coretemp\n")
        .write("/sys/class/hwmon/hwmon0/temp1_input", "40000\n")
        .write("/sys/class/hwmon/hwmon1/name", "it8686\n")
        .write("/sys/class/hwmon/hwmon1/temp1_input", reading);
}

TEST(TemperatureSensors, IgnoresAMainboardInputHotterThanAnyBoard) {
    TemporaryTree tree;
    writeOpenInput(tree, "118000\n");
    Sensors sensors(tree.root());

    EXPECT_THAT(sensors.readings(), ElementsAre(Pair("CPU temp1", 40.0)));
    tree.write("/sys/class/hwmon/hwmon1/temp1_input", "99000\n");
    EXPECT_EQ(sensors.readings().at("it8686 temp1"), 99.0);
}

TEST(TemperatureSensors, IgnoresAMainboardInputThatDidNotChangeWhileTheDieMoved) {
    TemporaryTree tree;
    writeOpenInput(tree, "95000\n");
    Sensors sensors(tree.root());
    ASSERT_TRUE(sensors.readings().contains("it8686 temp1"));

    tree.write("/sys/class/hwmon/hwmon0/temp1_input", "60000\n");
    EXPECT_THAT(sensors.readings(), ElementsAre(Pair("CPU temp1", 60.0)));

    tree.write("/sys/class/hwmon/hwmon1/temp1_input", "94000\n");
    EXPECT_EQ(sensors.readings().at("it8686 temp1"), 94.0);
}

TEST(TemperatureSensors, BelievesAHotGraphicsZoneBesideTheDie) {
    for (const bool hasChips : {false, true}) {
        TemporaryTree tree;
        tree.write("/sys/class/thermal/thermal_zone0/type", "cpu0-thermal\n")
            .write("/sys/class/thermal/thermal_zone0/temp", "70000\n")
            .write("/sys/class/thermal/thermal_zone1/type", "gpu-thermal\n")
            .write("/sys/class/thermal/thermal_zone1/temp", "103000\n")
            .write("/sys/class/thermal/thermal_zone2/type", "PMIC-Die\n")
            .write("/sys/class/thermal/thermal_zone2/temp", "100000\n");
        if (hasChips) {
            tree.write("/sys/class/hwmon/hwmon1/name", "gpu_thermal\n")
                .write("/sys/class/hwmon/hwmon1/temp1_input", "103000\n");
        }
        const auto* const graphics = hasChips ? "gpu_thermal temp1" : "gpu-thermal";

        EXPECT_THAT(Sensors(tree.root()).readings(),
                    UnorderedElementsAre(Pair("cpu0-thermal", 70.0), Pair(graphics, 103.0)));
    }
}

TEST(TemperatureSensors, BelievesAControllersHotGraphicsInput) {
    for (const std::string chip : {"thinkpad", "dell_smm"}) {
        TemporaryTree tree;
        tree.write("/sys/class/hwmon/hwmon0/name", "coretemp\n")
            .write("/sys/class/hwmon/hwmon0/temp1_input", "40000\n")
            .write("/sys/class/hwmon/hwmon1/name", chip + "\n")
            .write("/sys/class/hwmon/hwmon1/temp1_input", "101000\n")
            .write("/sys/class/hwmon/hwmon1/temp1_label", "GPU\n")
            .write("/sys/class/hwmon/hwmon1/temp2_input", "111000\n");

        EXPECT_THAT(Sensors(tree.root()).readings(),
                    UnorderedElementsAre(Pair("CPU temp1", 40.0), Pair(chip + " GPU", 101.0)));
    }
}

TEST(TemperatureSensors, BelievesAHotMainboardWithoutADieSensor) {
    TemporaryTree tree;
    tree.write("/sys/class/hwmon/hwmon1/name", "it8686\n")
        .write("/sys/class/hwmon/hwmon1/temp1_input", "101000\n");

    EXPECT_THAT(Sensors(tree.root()).readings(), ElementsAre(Pair("it8686 temp1", 101.0)));
}

}  // namespace
}  // namespace kestro
