#include "platform/linux/sensors/hwmon_fans.h"

#include "core/telemetry/smc_reader.h"
#include "platform/linux/sensors/linux_hid_event_system.h"
#include "tests/platform/linux/failing_reads.h"
#include "tests/platform/linux/sensors/fan_controller.h"

#include <gtest/gtest.h>

#include <memory>
#include <span>
#include <string>
#include <vector>

namespace kestro {
namespace {

using test::at;
using test::Controller;
using test::fixture;
using test::ManualClock;
using test::TemporaryTree;
using namespace std::chrono_literals;

TEST(HwmonFans, ListsAStoppedFanOfALaptopOrAGraphicsCard) {
    Controller laptop(fixture("hybrid-laptop"));
    Controller desktop(fixture("amd-desktop"));

    EXPECT_EQ(laptop.value("FNum"), 2);
    EXPECT_EQ(laptop.value("F1Ac"), 0);
    EXPECT_EQ(desktop.value("FNum"), 1);
    EXPECT_EQ(desktop.value("F0Mx"), 3300);
}

TEST(HwmonFans, OmitsAnUnconnectedHeader) {
    Controller controller(fixture("pc-coretemp"));

    EXPECT_EQ(controller.value("FNum"), 2);
    EXPECT_EQ(controller.value("F0Ac"), 812);
    EXPECT_EQ(controller.value("F1Ac"), 1043);
}

TEST(HwmonFans, ListsAHeaderOnceItsFanTurnsAndKeepsItWhenItStops) {
    TemporaryTree tree;
    tree.copyFrom("pc-coretemp");
    Controller controller(tree.root());
    ASSERT_EQ(controller.value("FNum"), 2);

    tree.write("/sys/class/hwmon/hwmon2/fan3_input", "640\n");
    controller.clock.advance(10s);
    EXPECT_EQ(controller.value("FNum"), 3);
    EXPECT_EQ(controller.value("F2Ac"), 640);

    tree.write("/sys/class/hwmon/hwmon2/fan3_input", "0\n")
        .rename("/sys/class/hwmon/hwmon2", "/sys/class/hwmon/hwmon9");
    controller.clock.advance(10s);
    EXPECT_EQ(controller.value("FNum"), 3);
}

TEST(HwmonFans, ListsALabelledMainboardHeaderWhoseFanIsStopped) {
    TemporaryTree tree;
    tree.write(at("name"), "nct6798\n").write(at("fan1_input"), "0\n").write(at("fan1_label"), "Pump\n");

    EXPECT_EQ(Controller(tree.root()).value("FNum"), 1);
}

/// What a reader reports as the fans' labels.
std::vector<std::string> labels(const std::string& root) {
    ManualClock clock;
    LinuxSMCService service(clock, root);
    SMCReader reader(service);
    auto fans = reader.readFans();
    reader.readLabels(fans);
    std::vector<std::string> result;
    for (const auto& fan : fans) {
        result.push_back(fan.label);
    }
    return result;
}

TEST(HwmonFans, DescribesFansByTheirLabels) {
    EXPECT_EQ(labels(fixture("intel-mac")), (std::vector<std::string>{"Left side", "Right side"}));
    EXPECT_EQ(labels(fixture("pc-coretemp")), (std::vector<std::string>{"", ""}));
}

TEST(HwmonFans, ShortensALabelThatExceedsAKey) {
    TemporaryTree tree;
    tree.write(at("name"), "dell_smm\n")
        .write(at("fan1_input"), "900\n")
        .write(at("fan1_label"), std::string(40, 'x'));

    EXPECT_EQ(labels(tree.root()), (std::vector<std::string>{std::string(32, 'x')}));
}

TEST(HwmonFans, ShortensALabelByWholeCharacters) {
    const std::string ascii(31, 'x');
    TemporaryTree tree;
    tree.write(at("name"), "dell_smm\n")
        .write(at("fan1_input"), "900\n")
        .write(at("fan1_label"), ascii + "\u00FC\n")
        .write(at("fan2_input"), "900\n")
        .write(at("fan2_label"), ascii.substr(1) + "\u00FC\n");

    EXPECT_EQ(labels(tree.root()), (std::vector<std::string>{ascii, ascii.substr(1) + "\u00FC"}));
}

TEST(HwmonFans, HasNoTargetBeyondTheMaximum) {
    TemporaryTree tree;
    tree.write(at("name"), "nct6779\n")
        .write(at("fan1_input"), "900\n")
        .write(at("fan1_max"), "3000\n")
        .write(at("fan1_target"), "27000\n");
    Controller controller(tree.root());

    EXPECT_FALSE(controller.value("F0Tg"));

    tree.write(at("fan1_target"), "2900\n");
    EXPECT_EQ(controller.value("F0Tg"), 2900);
}

TEST(HwmonFans, HasNoMaximumOfZero) {
    TemporaryTree tree;
    tree.write(at("name"), "thinkpad\n").write(at("fan1_input"), "900\n").write(at("fan1_max"), "0\n");
    Controller controller(tree.root());

    EXPECT_EQ(controller.value("F0Ac"), 900);
    EXPECT_FALSE(controller.value("F0Mx"));
}

TEST(HwmonFans, HasNoTargetBeyondTheUsualMaximumOfAFanWithoutOne) {
    TemporaryTree tree;
    tree.write(at("name"), "nct6779\n").write(at("fan1_input"), "900\n").write(at("fan1_target"), "27000\n");
    Controller controller(tree.root());

    EXPECT_FALSE(controller.value("F0Tg"));
    tree.write(at("fan1_target"), "0\n");
    EXPECT_FALSE(controller.value("F0Tg")) << "the chip does not regulate the speed";
}

TEST(HwmonFans, HasAHighTargetForAFanThatTurnsAsFast) {
    TemporaryTree tree;
    tree.write(at("name"), "aspeed_tach\n").write(at("fan1_input"), "14000\n").write(at("fan1_target"), "13500\n");
    Controller controller(tree.root());

    EXPECT_EQ(controller.value("F0Ac"), 14000);
    EXPECT_EQ(controller.value("F0Tg"), 13500);
}

TEST(HwmonFans, ReadsTheLimitsOfAGraphicsCardOnceItIsAwake) {
    TemporaryTree tree;
    tree.copyFrom("amd-desktop").write("/sys/class/hwmon/hwmon2/device/power/runtime_status", "suspended\n");
    Controller controller(tree.root());
    ASSERT_EQ(controller.value("FNum"), 1);
    ASSERT_FALSE(controller.value("F0Mx"));

    tree.write("/sys/class/hwmon/hwmon2/device/power/runtime_status", "active\n");
    controller.clock.advance(10s);

    EXPECT_EQ(controller.value("FNum"), 1);
    EXPECT_EQ(controller.value("F0Mn"), 0);
    EXPECT_EQ(controller.value("F0Mx"), 3300);
}

TEST(HwmonFans, ReadsALimitThatWasTemporarilyUnavailable) {
    TemporaryTree tree;
    tree.write(at("name"), "applesmc\n")
        .write(at("fan1_input"), "2000\n")
        .write(at("fan1_min"), "1200\n")
        .write(at("fan1_max"), "6000\n");
    std::optional<test::FailingReads> wakingUp(std::in_place, tree.root() + at("fan1_max"), ENODATA);
    Controller controller(tree.root());
    EXPECT_EQ(controller.value("F0Mn"), 1200);
    EXPECT_FALSE(controller.value("F0Mx"));

    wakingUp.reset();
    controller.clock.advance(10s);

    EXPECT_EQ(controller.value("FNum"), 1);
    EXPECT_EQ(controller.value("F0Mx"), 6000);
}

TEST(HwmonFans, DoesNotWakeASleepingGraphicsCard) {
    TemporaryTree tree;
    tree.copyFrom("amd-desktop")
        .write("/sys/class/hwmon/hwmon2/device/power/runtime_status", "suspended\n")
        .write("/sys/class/hwmon/hwmon2/fan1_input", "1234\n");
    Controller controller(tree.root());

    EXPECT_EQ(controller.value("FNum"), 1);
    EXPECT_EQ(controller.value("F0Ac"), 0);
    EXPECT_FALSE(controller.value("F0Tg"));
    tree.write("/sys/class/hwmon/hwmon2/device/power/runtime_status", "active\n");
    EXPECT_EQ(controller.value("F0Ac"), 1234);
}

TEST(HwmonFans, LetsAGraphicsCardFallAsleepBetweenReadings) {
    TemporaryTree tree;
    tree.copyFrom("amd-desktop").write("/sys/class/hwmon/hwmon2/fan1_input", "1000\n");
    Controller controller(tree.root());
    ASSERT_EQ(controller.value("F0Ac"), 1000);

    tree.write("/sys/class/hwmon/hwmon2/fan1_input", "1100\n");
    for (int second = 1; second < 10; ++second) {
        controller.clock.advance(1s);
        EXPECT_EQ(controller.value("F0Ac"), 1000) << "within twice the autosuspend delay of 5 s";
    }
    controller.clock.advance(1s);
    EXPECT_EQ(controller.value("F0Ac"), 1100);
}

TEST(HwmonFans, ForgetsAReadingThatIsAMinuteOld) {
    TemporaryTree tree;
    tree.copyFrom("amd-desktop")
        .write("/sys/class/hwmon/hwmon2/fan1_input", "1000\n")
        .write("/sys/class/hwmon/hwmon2/device/power/autosuspend_delay_ms", "60000\n");
    Controller controller(tree.root());
    ASSERT_EQ(controller.value("F0Ac"), 1000);

    controller.clock.advance(59s);
    EXPECT_EQ(controller.value("F0Ac"), 1000);
    controller.clock.advance(1s);
    EXPECT_FALSE(controller.value("F0Ac"));
    controller.clock.advance(60s);
    EXPECT_EQ(controller.value("F0Ac"), 1000);
}

TEST(HwmonFans, SharesTheReadingsOfADeviceWithTheTemperatures) {
    TemporaryTree tree;
    tree.copyFrom("amd-desktop").write("/sys/class/hwmon/hwmon2/fan1_input", "1000\n");
    const auto devices = std::make_shared<SleepingDevices>();
    ManualClock clock;
    LinuxHIDEventSystem sensors(clock, tree.root(), devices);
    LinuxSMCService service(clock, tree.root(), devices);
    SMCReader reader(service);
    reader.readFans();

    clock.advance(5s);
    const auto client = sensors.createClient().value_or(0);
    const auto listed = sensors.copyServices(client).value_or(std::span<const HIDService>());
    for (const auto sensor : listed) {
        const bool isGraphics = sensors.copyProduct(sensor).value_or("").starts_with("amdgpu");
        EXPECT_TRUE(!isGraphics || !sensors.copyTemperatureEvent(sensor)) << "the fan was read 5 s ago";
    }
}

TEST(HwmonFans, UsesADuplicatingChipOnlyWithoutAnother) {
    TemporaryTree tree;
    tree.write(at("name"), "acpi_fan\n").write(at("fan1_input"), "3000\n");
    EXPECT_EQ(Controller(tree.root()).value("F0Ac"), 3000);

    tree.write("/sys/class/hwmon/hwmon1/name", "thinkpad\n").write("/sys/class/hwmon/hwmon1/fan1_input", "3010\n");
    Controller both(tree.root());

    EXPECT_EQ(both.value("FNum"), 1);
    EXPECT_EQ(both.value("F0Ac"), 3010);
}

TEST(HwmonFans, UsesADuplicatingChipUntilAMainboardFanTurns) {
    TemporaryTree tree;
    tree.write(at("name"), "nct6798\n")
        .write(at("fan1_input"), "0\n")
        .write("/sys/class/hwmon/hwmon1/name", "acpi_fan\n")
        .write("/sys/class/hwmon/hwmon1/fan1_input", "1500\n");
    Controller controller(tree.root());
    EXPECT_EQ(controller.value("FNum"), 1);
    EXPECT_EQ(controller.value("F0Ac"), 1500);

    tree.write(at("fan1_input"), "900\n");
    controller.clock.advance(10s);

    EXPECT_EQ(controller.value("FNum"), 1);
    EXPECT_EQ(controller.value("F0Ac"), 900);
}

}  // namespace
}  // namespace kestro
