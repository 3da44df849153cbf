#include "platform/linux/sensors/hwmon_fans.h"

#include "tests/platform/linux/failing_reads.h"
#include "tests/platform/linux/sensors/fan_controller.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace kestro {
namespace {

using test::chipFile;
using test::Controller;
using test::fixture;
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
    tree.write(chipFile("name"), "nct6798\n").write(chipFile("fan1_input"), "0\n").write(chipFile("fan1_label"), "Pump\n");

    EXPECT_EQ(Controller(tree.root()).value("FNum"), 1);
}

TEST(HwmonFans, ReadsAnIntelMacsFans) {
    TemporaryTree tree;
    tree.write(chipFile("device/name"), "applesmc\n")
        .write(chipFile("device/fan1_input"), "2160\n")
        .write(chipFile("device/fan1_min"), "2000\n")
        .write(chipFile("device/fan1_max"), "6200\n")
        .write(chipFile("device/fan1_output"), "2160\n")
        .write(chipFile("device/fan1_label"), "Left side  \n");
    Controller controller(tree.root());

    EXPECT_EQ(controller.value("FNum"), 1);
    EXPECT_EQ(controller.value("F0Ac"), 2160);
    EXPECT_EQ(controller.value("F0Mn"), 2000);
    EXPECT_EQ(controller.value("F0Mx"), 6200);
    EXPECT_EQ(controller.value("F0Tg"), 2160);
}

TEST(HwmonFans, HasNoTargetBeyondTheMaximum) {
    TemporaryTree tree;
    tree.write(chipFile("name"), "nct6779\n")
        .write(chipFile("fan1_input"), "900\n")
        .write(chipFile("fan1_max"), "3000\n")
        .write(chipFile("fan1_target"), "27000\n");
    Controller controller(tree.root());

    EXPECT_FALSE(controller.value("F0Tg"));

    tree.write(chipFile("fan1_target"), "2900\n");
    EXPECT_EQ(controller.value("F0Tg"), 2900);
}

TEST(HwmonFans, FollowsARenumberedChip) {
    TemporaryTree tree;
    tree.copyFrom("apple-laptop");
    Controller controller(tree.root());
    ASSERT_EQ(controller.value("F0Ac"), 1999);

    tree.rename("/sys/class/hwmon/hwmon2", "/sys/class/hwmon/hwmon5")
        .write("/sys/class/hwmon/hwmon5/fan1_input", "2500\n");
    controller.clock.advance(10s);

    EXPECT_EQ(controller.value("FNum"), 2);
    EXPECT_EQ(controller.value("F0Ac"), 2500);
}

TEST(HwmonFans, KeepsAFanThatTemporarilyHasNoReading) {
    TemporaryTree tree;
    tree.write(chipFile("name"), "thinkpad\n").write(chipFile("fan1_input"), "2000\n");
    Controller controller(tree.root());

    for (const std::string& text : {std::string(), std::string("N/A"), std::string("\xFF\xFE"),
                                    std::string("65535"), std::string("-1"), std::string(100000, '1')}) {
        tree.write(chipFile("fan1_input"), text);
        EXPECT_EQ(controller.value("FNum"), 1);
        EXPECT_FALSE(controller.value("F0Ac")) << text.substr(0, 10);
    }
    tree.write(chipFile("fan1_input"), "2100\n");
    EXPECT_EQ(controller.value("F0Ac"), 2100);
}

TEST(HwmonFans, FindsARecreatedDeviceUnderTheSameNumber) {
    TemporaryTree tree;
    tree.write(chipFile("name"), "thinkpad\n").write(chipFile("fan1_input"), "2000\n");
    Controller controller(tree.root());
    ASSERT_EQ(controller.value("F0Ac"), 2000);
    tree.rename(chipFile("fan1_input"), "/gone").write(chipFile("fan1_input"), "2100\n");
    const test::FailingReads gone(tree.root() + "/gone", ENODEV);

    EXPECT_FALSE(controller.value("F0Ac"));
    EXPECT_EQ(controller.value("FNum"), 1);
    controller.clock.advance(2s);
    EXPECT_EQ(controller.value("FNum"), 1);
    EXPECT_EQ(controller.value("F0Ac"), 2100);
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
    tree.write(chipFile("name"), "applesmc\n")
        .write(chipFile("fan1_input"), "2000\n")
        .write(chipFile("fan1_min"), "1200\n")
        .write(chipFile("fan1_max"), "6000\n");
    std::optional<test::FailingReads> wakingUp(std::in_place, tree.root() + chipFile("fan1_max"), ENODATA);
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

TEST(HwmonFans, UsesADuplicatingChipOnlyWithoutAnother) {
    TemporaryTree tree;
    tree.write(chipFile("name"), "acpi_fan\n").write(chipFile("fan1_input"), "3000\n");
    EXPECT_EQ(Controller(tree.root()).value("F0Ac"), 3000);

    tree.write("/sys/class/hwmon/hwmon1/name", "thinkpad\n").write("/sys/class/hwmon/hwmon1/fan1_input", "3010\n");
    Controller both(tree.root());

    EXPECT_EQ(both.value("FNum"), 1);
    EXPECT_EQ(both.value("F0Ac"), 3010);
}

TEST(HwmonFans, UsesADuplicatingChipUntilAMainboardFanTurns) {
    TemporaryTree tree;
    tree.write(chipFile("name"), "nct6798\n")
        .write(chipFile("fan1_input"), "0\n")
        .write("/sys/class/hwmon/hwmon1/name", "acpi_fan\n")
        .write("/sys/class/hwmon/hwmon1/fan1_input", "1500\n");
    Controller controller(tree.root());
    EXPECT_EQ(controller.value("FNum"), 1);
    EXPECT_EQ(controller.value("F0Ac"), 1500);

    tree.write(chipFile("fan1_input"), "900\n");
    controller.clock.advance(10s);

    EXPECT_EQ(controller.value("FNum"), 1);
    EXPECT_EQ(controller.value("F0Ac"), 900);
}

}  // namespace
}  // namespace kestro
