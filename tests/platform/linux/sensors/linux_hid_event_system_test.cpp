#include "platform/linux/sensors/linux_hid_event_system.h"

#include "tests/platform/linux/failing_reads.h"
#include "tests/platform/linux/sensors/sensor_readings.h"
#include "tests/support/allocation_counter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <string>

namespace kestro {
namespace {

using test::fixture;
using test::Sensors;
using test::TemporaryTree;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testing::UnorderedElementsAre;
using namespace std::chrono_literals;

TEST(LinuxHIDEventSystem, ListsTheDieOfAPcFirstAndAcpiLastWithoutFloatingInputs) {
    Sensors sensors(fixture("pc-coretemp"));

    EXPECT_THAT(sensors.names(),
                ElementsAre("CPU Package", "CPU Core 0", "CPU Core 1", "CPU Core 2", "CPU Core 3",
                            "nvme Composite", "nvme Sensor 1", "nct6793 SYSTIN", "nct6793 PECI Agent 0",
                            "nct6793 PCH_CHIP_processor_MAX_TEMP", "acpitz temp1"));
}

TEST(LinuxHIDEventSystem, ReadsDegreesCelsius) {
    Sensors sensors(fixture("amd-desktop"));

    EXPECT_THAT(sensors.readings(), UnorderedElementsAre(Pair("CPU Tctl", 62.125), Pair("CPU Tccd1", 58.25),
                                                         Pair("nvme Composite", 44.85), Pair("amdgpu edge", 51.0),
                                                         Pair("amdgpu junction", 55.0), Pair("amdgpu mem", 60.0)));
}

TEST(LinuxHIDEventSystem, IgnoresTheBatteryOfAMouse) {
    TemporaryTree tree;
    tree.copyFrom("amd-desktop")
        .write("/sys/class/power_supply/hidpp_battery_0/temp", "300\n")
        .write("/sys/class/hwmon/hwmon3/temp1_input", "30000\n");

    for (const auto& name : Sensors(tree.root()).names()) {
        EXPECT_EQ(name.find("attery"), std::string::npos) << name;
    }
}

TEST(LinuxHIDEventSystem, KeepsASensorThatTemporarilyHasNoReading) {
    TemporaryTree tree;
    tree.copyFrom("amd-desktop");
    Sensors sensors(tree.root());
    const auto names = sensors.names();

    for (const std::string& text : {std::string(), std::string("N/A\n"), std::string("\xFF\xFE"),
                                    std::string("99999999999\n"), std::string(100000, '1')}) {
        tree.write("/sys/class/hwmon/hwmon1/temp1_input", text);
        EXPECT_EQ(sensors.names(), names);
        EXPECT_FALSE(sensors.readings().contains("CPU Tctl"));
    }
    tree.write("/sys/class/hwmon/hwmon1/temp1_input", "63000\n");
    EXPECT_EQ(sensors.readings().at("CPU Tctl"), 63.0);
}

TEST(LinuxHIDEventSystem, FollowsARenumberedChip) {
    TemporaryTree tree;
    tree.copyFrom("amd-desktop");
    Sensors sensors(tree.root());
    ASSERT_EQ(sensors.readings().at("CPU Tccd1"), 58.25);

    tree.rename("/sys/class/hwmon/hwmon1", "/sys/class/hwmon/hwmon8")
        .write("/sys/class/hwmon/hwmon8/temp3_input", "60000\n");
    sensors.clock.advance(10s);

    EXPECT_EQ(sensors.readings().at("CPU Tccd1"), 60.0);
}

TEST(LinuxHIDEventSystem, ReadsADriveAtMostEveryTenSeconds) {
    TemporaryTree tree;
    tree.copyFrom("amd-desktop");
    Sensors sensors(tree.root());
    ASSERT_EQ(sensors.readings().at("nvme Composite"), 44.85);

    tree.write("/sys/class/hwmon/hwmon0/temp1_input", "50000\n");
    sensors.clock.advance(9s);
    EXPECT_EQ(sensors.readings().at("nvme Composite"), 44.85);
    sensors.clock.advance(1s);
    EXPECT_EQ(sensors.readings().at("nvme Composite"), 50.0);
}

TEST(LinuxHIDEventSystem, DoesNotWakeASleepingGraphicsCard) {
    TemporaryTree tree;
    tree.copyFrom("amd-desktop").write("/sys/class/hwmon/hwmon2/device/power/runtime_status", "suspended\n");
    Sensors sensors(tree.root());

    EXPECT_FALSE(sensors.readings().contains("amdgpu edge"));
    tree.write("/sys/class/hwmon/hwmon2/device/power/runtime_status", "active\n");
    EXPECT_TRUE(sensors.readings().contains("amdgpu edge"));
}

TEST(LinuxHIDEventSystem, LetsAGraphicsCardFallAsleepBetweenReadings) {
    TemporaryTree tree;
    tree.copyFrom("amd-desktop");
    Sensors sensors(tree.root());
    ASSERT_EQ(sensors.readings().at("amdgpu edge"), 51.0);

    tree.write("/sys/class/hwmon/hwmon2/temp1_input", "57000\n");
    sensors.clock.advance(9s);
    EXPECT_EQ(sensors.readings().at("amdgpu edge"), 51.0);
    sensors.clock.advance(1s);
    EXPECT_EQ(sensors.readings().at("amdgpu edge"), 57.0);
}

TEST(LinuxHIDEventSystem, DoesNotShowAReadingThatIsMinutesOld) {
    TemporaryTree tree;
    tree.copyFrom("amd-desktop").write("/sys/class/hwmon/hwmon2/device/power/autosuspend_delay_ms", "900000\n");
    Sensors sensors(tree.root());
    ASSERT_EQ(sensors.readings().at("amdgpu edge"), 51.0);

    sensors.clock.advance(59s);
    EXPECT_EQ(sensors.readings().at("amdgpu edge"), 51.0);
    sensors.clock.advance(1s);
    EXPECT_FALSE(sensors.readings().contains("amdgpu edge"));
}

TEST(LinuxHIDEventSystem, SkipsInputsThatReportAFault) {
    TemporaryTree tree;
    tree.write("/sys/class/hwmon/hwmon0/name", "it8686\n")
        .write("/sys/class/hwmon/hwmon0/temp1_input", "33000\n")
        .write("/sys/class/hwmon/hwmon0/temp2_input", "44000\n")
        .write("/sys/class/hwmon/hwmon0/temp2_fault", "1\n")
        .write("/sys/class/hwmon/hwmon0/temp3_input", "55000\n")
        .write("/sys/class/hwmon/hwmon0/temp3_type", "0\n");

    EXPECT_THAT(Sensors(tree.root()).names(), ElementsAre("it8686 temp1"));
}

TEST(LinuxHIDEventSystem, AddsAnInputWhoseFaultHasCleared) {
    TemporaryTree tree;
    tree.write("/sys/class/hwmon/hwmon0/name", "it8686\n")
        .write("/sys/class/hwmon/hwmon0/temp1_input", "33000\n")
        .write("/sys/class/hwmon/hwmon0/temp2_input", "44000\n")
        .write("/sys/class/hwmon/hwmon0/temp2_fault", "1\n");
    Sensors sensors(tree.root());
    ASSERT_THAT(sensors.names(), ElementsAre("it8686 temp1"));

    tree.write("/sys/class/hwmon/hwmon0/temp2_fault", "0\n");

    sensors.clock.advance(9s);
    EXPECT_THAT(sensors.names(), ElementsAre("it8686 temp1"));
    sensors.clock.advance(1s);
    EXPECT_THAT(sensors.names(), ElementsAre("it8686 temp1", "it8686 temp2"));
}

TEST(LinuxHIDEventSystem, FindsARecreatedDeviceUnderTheSameNumber) {
    TemporaryTree tree;
    tree.write("/sys/class/hwmon/hwmon0/name", "nvme\n").write("/sys/class/hwmon/hwmon0/temp1_input", "33000\n");
    Sensors sensors(tree.root());
    ASSERT_THAT(sensors.readings(), UnorderedElementsAre(Pair("nvme temp1", 33)));
    tree.rename("/sys/class/hwmon/hwmon0/temp1_input", "/gone")
        .write("/sys/class/hwmon/hwmon0/temp1_input", "34000\n");
    const test::FailingReads gone(tree.root() + "/gone", ENODEV);

    sensors.clock.advance(10s);
    EXPECT_THAT(sensors.readings(), IsEmpty());
    sensors.clock.advance(2s);
    EXPECT_THAT(sensors.readings(), UnorderedElementsAre(Pair("nvme temp1", 34)));
}

TEST(LinuxHIDEventSystem, HasAnEmptyListOnAMachineWithoutSensors) {
    EXPECT_THAT(Sensors(fixture("vm")).names(), IsEmpty());
    EXPECT_THAT(Sensors(fixture("no-such-machine")).names(), IsEmpty());
}

TEST(LinuxHIDEventSystem, IsBoundedOnAMachineOfAbsurdSize) {
    TemporaryTree tree;
    for (int chip = 0; chip < 6; ++chip) {
        const auto directory = "/sys/class/hwmon/hwmon" + std::to_string(chip);
        tree.write(directory + "/name", "coretemp\n");
        for (int input = 1; input <= 80; ++input) {
            tree.write(directory + "/temp" + std::to_string(input) + "_input", "40000\n");
        }
    }

    EXPECT_EQ(Sensors(tree.root()).names().size(), 256U);
}

TEST(LinuxHIDEventSystem, MatchesOnlyTheUsageOfTemperatureSensors) {
    Sensors sensors(fixture("amd-desktop"));
    sensors.system.setMatching(sensors.client, 1, 6);

    EXPECT_THAT(sensors.names(), IsEmpty());
}

TEST(LinuxHIDEventSystem, ReadsSensorsWithoutAllocating) {
    Sensors sensors(fixture("amd-desktop"));
    sensors.readings();

    const auto before = test::allocationsOfThisThread();
    double sum = 0;
    std::size_t letters = 0;
    for (int tick = 0; tick < 30; ++tick) {
        sensors.clock.advance(1s);
        for (const auto service : sensors.services()) {
            letters += sensors.system.copyProduct(service)->size();
            sum += sensors.system.copyTemperatureEvent(service).value_or(0);
        }
    }

    EXPECT_EQ(test::allocationsOfThisThread() - before, 0);
    EXPECT_GT(sum, 30 * 20.0);
    EXPECT_GT(letters, 0U);
}

TEST(LinuxHIDEventSystem, RejectsUnknownClientsAndServices) {
    Sensors sensors(fixture("amd-desktop"));

    EXPECT_FALSE(sensors.system.copyServices(0));
    EXPECT_FALSE(sensors.system.copyServices(99));
    sensors.system.setMatching(99, 1, 1);
    ASSERT_TRUE(sensors.system.copyServices(sensors.client));
    EXPECT_FALSE(sensors.system.copyProduct(0));
    EXPECT_FALSE(sensors.system.copyProduct(99));
    EXPECT_FALSE(sensors.system.copyTemperatureEvent(99));
}

TEST(LinuxHIDEventSystem, ReadsADriverThatRegistersTheOldWay) {
    TemporaryTree tree;
    tree.write("/sys/class/hwmon/hwmon0/device/name", "via_cputemp\n")
        .write("/sys/class/hwmon/hwmon0/device/temp1_input", "47000\n")
        .write("/sys/class/hwmon/hwmon0/device/temp1_label", "Core 0\n");

    EXPECT_THAT(Sensors(tree.root()).readings(), ElementsAre(Pair("CPU Core 0", 47.0)));
}

}  // namespace
}  // namespace kestro
