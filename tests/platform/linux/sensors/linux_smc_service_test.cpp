#include "platform/linux/sensors/linux_smc_service.h"

#include "tests/platform/linux/failing_reads.h"
#include "tests/platform/linux/support.h"
#include "tests/support/allocation_counter.h"

#include <gtest/gtest.h>

#include <bit>
#include <cstring>
#include <string>

namespace kestro {
namespace {

using test::fixture;
using test::ManualClock;
using test::TemporaryTree;
using namespace std::chrono_literals;

constexpr std::string_view chip = "/sys/class/hwmon/hwmon0/";

std::string at(std::string_view attribute) {
    return std::string(chip).append(attribute);
}

/// Queries like a reader: information first, then that many bytes.
class Controller {
public:
    explicit Controller(const std::string& root) : service(clock, root), connection(service.open().value_or(0)) {}

    std::optional<std::string> type(std::string_view key) {
        SMCRecord output{};
        if (!service.callStructMethod(connection, record(key, 9, 0), output)) {
            return std::nullopt;
        }
        return std::string(output.rbegin() + 44, output.rbegin() + 48);
    }

    std::optional<double> value(std::string_view key) {
        SMCRecord output{};
        if (!service.callStructMethod(connection, record(key, 9, 0), output)) {
            return std::nullopt;
        }
        const std::uint8_t size = output[28];
        const bool isByte = output[35] == 'u';
        if (!service.callStructMethod(connection, record(key, 5, size), output)) {
            return std::nullopt;
        }
        float number = 0;
        std::memcpy(&number, output.data() + 48, sizeof number);
        return isByte ? output[48] : number;
    }

    static SMCRecord record(std::string_view key, std::uint8_t command, std::uint8_t size) {
        SMCRecord input{};
        std::uint32_t code = 0;
        for (const char character : key) {
            code = code * 256 + static_cast<unsigned char>(character);
        }
        std::memcpy(input.data(), &code, sizeof code);
        input[28] = size;
        input[42] = command;
        return input;
    }

    ManualClock clock;
    LinuxSMCService service;
    std::uint32_t connection;
};

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

TEST(LinuxSMCService, ListsAStoppedFanOfALaptopOrAGraphicsCard) {
    Controller laptop(fixture("hybrid-laptop"));
    Controller desktop(fixture("amd-desktop"));

    EXPECT_EQ(laptop.value("FNum"), 2);
    EXPECT_EQ(laptop.value("F1Ac"), 0);
    EXPECT_EQ(desktop.value("FNum"), 1);
    EXPECT_EQ(desktop.value("F0Mx"), 3300);
}

TEST(LinuxSMCService, OmitsAnUnconnectedHeader) {
    Controller controller(fixture("pc-coretemp"));

    EXPECT_EQ(controller.value("FNum"), 2);
    EXPECT_EQ(controller.value("F0Ac"), 812);
    EXPECT_EQ(controller.value("F1Ac"), 1043);
}

TEST(LinuxSMCService, ListsAHeaderOnceItsFanTurnsAndKeepsItWhenItStops) {
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

TEST(LinuxSMCService, ListsALabelledMainboardHeaderWhoseFanIsStopped) {
    TemporaryTree tree;
    tree.write(at("name"), "nct6798\n").write(at("fan1_input"), "0\n").write(at("fan1_label"), "Pump\n");

    EXPECT_EQ(Controller(tree.root()).value("FNum"), 1);
}

TEST(LinuxSMCService, ReadsAnIntelMacsFans) {
    TemporaryTree tree;
    tree.write(at("device/name"), "applesmc\n")
        .write(at("device/fan1_input"), "2160\n")
        .write(at("device/fan1_min"), "2000\n")
        .write(at("device/fan1_max"), "6200\n")
        .write(at("device/fan1_output"), "2160\n")
        .write(at("device/fan1_label"), "Left side  \n");
    Controller controller(tree.root());

    EXPECT_EQ(controller.value("FNum"), 1);
    EXPECT_EQ(controller.value("F0Ac"), 2160);
    EXPECT_EQ(controller.value("F0Mn"), 2000);
    EXPECT_EQ(controller.value("F0Mx"), 6200);
    EXPECT_EQ(controller.value("F0Tg"), 2160);
}

TEST(LinuxSMCService, HasNoTargetBeyondTheMaximum) {
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

TEST(LinuxSMCService, ReadsTheLimitsOfAGraphicsCardOnceItIsAwake) {
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

TEST(LinuxSMCService, ReadsALimitThatWasTemporarilyUnavailable) {
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

TEST(LinuxSMCService, DoesNotWakeASleepingGraphicsCard) {
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

TEST(LinuxSMCService, UsesADuplicatingChipOnlyWithoutAnother) {
    TemporaryTree tree;
    tree.write(at("name"), "acpi_fan\n").write(at("fan1_input"), "3000\n");
    EXPECT_EQ(Controller(tree.root()).value("F0Ac"), 3000);

    tree.write("/sys/class/hwmon/hwmon1/name", "thinkpad\n").write("/sys/class/hwmon/hwmon1/fan1_input", "3010\n");
    Controller both(tree.root());

    EXPECT_EQ(both.value("FNum"), 1);
    EXPECT_EQ(both.value("F0Ac"), 3010);
}

TEST(LinuxSMCService, UsesADuplicatingChipUntilAMainboardFanTurns) {
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
