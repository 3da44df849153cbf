#include "platform/linux/sensors/linux_smc_service.h"

#include "tests/platform/linux/failing_reads.h"
#include "tests/platform/linux/sensors/fan_controller.h"
#include "tests/support/allocation_counter.h"

#include <gtest/gtest.h>

#include <string>

namespace kestro {
namespace {

using test::at;
using test::Controller;
using test::fixture;
using test::TemporaryTree;
using namespace std::chrono_literals;

TEST(LinuxSMCService, ReadsEveryKeyOfTwoFans) {
    Controller controller(fixture("apple-laptop"));

    EXPECT_EQ(controller.type("FNum"), "ui8 ");
    EXPECT_EQ(controller.type("F0Ac"), "flt ");
    EXPECT_EQ(controller.value("FNum"), 2);
    EXPECT_EQ(controller.value("F0Ac"), 1999);
    EXPECT_EQ(controller.value("F0Mn"), 1200);
    EXPECT_EQ(controller.value("F0Mx"), 5777);
    EXPECT_EQ(controller.value("F0Tg"), 2000);
    EXPECT_EQ(controller.value("F1Mx"), 6241);
}

TEST(LinuxSMCService, FailsForKeysThatDoNotExist) {
    Controller controller(fixture("hybrid-laptop"));

    EXPECT_EQ(controller.value("F0Ac"), 2731);
    EXPECT_FALSE(controller.value("F0Mn"));
    EXPECT_FALSE(controller.value("F0Mx"));
    EXPECT_FALSE(controller.value("F0Tg"));
    EXPECT_FALSE(controller.value("F0XX"));
    EXPECT_FALSE(controller.value("F2Ac"));
    EXPECT_FALSE(controller.value("TC0P"));
    EXPECT_FALSE(controller.value(""));
}

TEST(LinuxSMCService, ReadsAnIntelMacsFans) {
    Controller controller(fixture("intel-mac"));

    EXPECT_EQ(controller.value("FNum"), 2);
    EXPECT_EQ(controller.value("F0Ac"), 2159);
    EXPECT_EQ(controller.value("F0Mn"), 2160);
    EXPECT_EQ(controller.value("F0Mx"), 6156);
    EXPECT_EQ(controller.value("F0Tg"), 2160);
    EXPECT_EQ(controller.value("F1Tg"), 2000);
}

TEST(LinuxSMCService, HasNoControllerWithoutFansAndFindsOneThatAppears) {
    TemporaryTree tree;
    tree.copyFrom("vm");
    Controller controller(tree.root());
    EXPECT_EQ(controller.connection, 0U);

    tree.write(at("name"), "thinkpad\n").write(at("fan1_input"), "2000\n");
    EXPECT_FALSE(controller.service.open());
    controller.clock.advance(10s);

    EXPECT_TRUE(controller.service.open());
}

TEST(LinuxSMCService, CountsNoFansOnceTheyAreGone) {
    TemporaryTree tree;
    tree.write(at("name"), "thinkpad\n").write(at("fan1_input"), "2000\n");
    Controller controller(tree.root());
    ASSERT_EQ(controller.value("FNum"), 1);

    tree.remove("/sys/class/hwmon/hwmon0");
    controller.clock.advance(10s);

    EXPECT_EQ(controller.value("FNum"), 0);
    EXPECT_FALSE(controller.value("F0Ac"));
}

TEST(LinuxSMCService, FollowsARenumberedChip) {
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

TEST(LinuxSMCService, KeepsAFanThatTemporarilyHasNoReading) {
    TemporaryTree tree;
    tree.write(at("name"), "thinkpad\n").write(at("fan1_input"), "2000\n");
    Controller controller(tree.root());

    for (const std::string& text : {std::string(), std::string("N/A"), std::string("\xFF\xFE"),
                                    std::string("65535"), std::string("-1"), std::string(100000, '1')}) {
        tree.write(at("fan1_input"), text);
        EXPECT_EQ(controller.value("FNum"), 1);
        EXPECT_FALSE(controller.value("F0Ac")) << text.substr(0, 10);
    }
    tree.write(at("fan1_input"), "2100\n");
    EXPECT_EQ(controller.value("F0Ac"), 2100);
}

TEST(LinuxSMCService, FindsARecreatedDeviceUnderTheSameNumber) {
    TemporaryTree tree;
    tree.write(at("name"), "thinkpad\n").write(at("fan1_input"), "2000\n");
    Controller controller(tree.root());
    ASSERT_EQ(controller.value("F0Ac"), 2000);
    tree.rename(at("fan1_input"), "/gone").write(at("fan1_input"), "2100\n");
    const test::FailingReads gone(tree.root() + "/gone", ENODEV);

    EXPECT_FALSE(controller.value("F0Ac"));
    EXPECT_EQ(controller.value("FNum"), 1);
    controller.clock.advance(2s);
    EXPECT_EQ(controller.value("FNum"), 1);
    EXPECT_EQ(controller.value("F0Ac"), 2100);
}

TEST(LinuxSMCService, ReadsTheKeysOfMoreThanTenFansUpToALimit) {
    TemporaryTree tree;
    tree.write(at("name"), "corsaircpro\n");
    for (int number = 1; number <= 40; ++number) {
        tree.write(at("fan" + std::to_string(number) + "_input"), std::to_string(1000 + number));
    }
    Controller controller(tree.root());

    EXPECT_EQ(controller.value("FNum"), 32);
    EXPECT_EQ(controller.value("F9Ac"), 1010);
    EXPECT_EQ(controller.value("F10Ac"), 1011);
    EXPECT_EQ(controller.value("F31Ac"), 1032);
    EXPECT_FALSE(controller.value("F32Ac"));
}

TEST(LinuxSMCService, FailsForOtherCommandsSizesAndConnections) {
    Controller controller(fixture("apple-laptop"));
    auto& service = controller.service;
    SMCRecord output{};

    EXPECT_FALSE(service.callStructMethod(controller.connection, Controller::record("F0Ac", 6, 4), output));
    EXPECT_FALSE(service.callStructMethod(controller.connection, Controller::record("F0Ac", 5, 2), output));
    EXPECT_FALSE(service.callStructMethod(0, Controller::record("FNum", 9, 0), output));
    service.close(controller.connection);
    EXPECT_FALSE(service.callStructMethod(controller.connection, Controller::record("FNum", 9, 0), output));
}

TEST(LinuxSMCService, AllocatesNothingInSteadyState) {
    TemporaryTree tree;
    tree.copyFrom("pc-coretemp");
    Controller controller(tree.root());
    controller.value("FNum");
    controller.value("F0Ac");

    const auto before = test::allocationsOfThisThread();
    double sum = 0;
    for (int tick = 0; tick < 30; ++tick) {
        controller.clock.advance(1s);
        sum += controller.value("FNum").value_or(0) + controller.value("F0Ac").value_or(0) +
               controller.value("F0Tg").value_or(0) + controller.value("F1Ac").value_or(0);
    }
    const auto after = test::allocationsOfThisThread();

    EXPECT_EQ(sum, 30 * (2 + 812 + 1043));
    EXPECT_EQ(after, before);
}

}  // namespace
}  // namespace kestro
