#include "core/telemetry/smc_reader.h"
#include "core/telemetry/thermal_reader.h"
#include "platform/linux/machine/linux_process_info_service.h"
#include "platform/linux/machine/linux_system_control.h"
#include "platform/linux/sensors/linux_hid_event_system.h"
#include "platform/linux/sensors/linux_smc_service.h"
#include "platform/linux/sensors/sensor_names.h"
#include "tests/platform/linux/sensors/machine_layout.h"

#include <gtest/gtest.h>

#include <cctype>
#include <ostream>
#include <set>
#include <span>
#include <string>
#include <vector>

namespace kestro {

// GoogleTest finds it by argument-dependent lookup.
namespace test {
void PrintTo(const MachineLayout& machine, std::ostream* out) {
    *out << machine.name << " (" << machine.source << ")";
}
}  // namespace test

namespace {

using test::MachineLayout;

const std::vector<MachineLayout>& machines() {
    static const auto all =
        test::readMachineLayouts(sourceTree() + "/tests/platform/linux/sensors/machine_layouts.txt");
    return all;
}

class MachineLayouts : public testing::TestWithParam<MachineLayout> {
protected:
    void SetUp() override { GetParam().writeTo(tree_); }

    /// The names of the sensors that measure the die.
    std::vector<std::string> dieNames() {
        LinuxHIDEventSystem sensors(clock_, tree_.root());
        const auto client = sensors.createClient().value_or(0);
        std::vector<std::string> names;
        const auto services = sensors.copyServices(client).value_or(std::span<const HIDService>());
        for (const auto service : services) {
            const auto name = sensors.copyProduct(service).value_or("");
            if (isDieName(name)) {
                names.emplace_back(name);
            }
        }
        return names;
    }

    test::TemporaryTree tree_;
    test::ManualClock clock_;
};

TEST_P(MachineLayouts, ReportsItsDieAndItsPeak) {
    LinuxHIDEventSystem sensors(clock_, tree_.root());
    LinuxProcessInfoService processInfo(clock_, tree_.root());

    const auto thermals = ThermalReader(sensors, processInfo).readThermals();
    const auto names = dieNames();

    const auto& die = GetParam().die;
    EXPECT_NEAR(thermals.averageSoCTemp, die ? die->average : 50, 0.001);
    EXPECT_NEAR(thermals.peakDieTemp, GetParam().peak.value_or(thermals.averageSoCTemp), 0.001);
    ASSERT_EQ(names.size(), die ? die->count : 0);
    EXPECT_EQ(names.empty() ? "" : names.front(), die ? die->first : "");
}

TEST_P(MachineLayouts, ReportsItsFans) {
    LinuxSMCService service(clock_, tree_.root());

    const auto fans = SMCReader(service).readFans();

    ASSERT_EQ(fans.size(), GetParam().fans.size());
    for (std::size_t i = 0; i < fans.size(); ++i) {
        EXPECT_EQ(fans[i].currentRPM, GetParam().fans[i].current);
        EXPECT_EQ(fans[i].targetRPM, GetParam().fans[i].target);
    }
}

TEST_P(MachineLayouts, ReportsItsClusters) {
    if (GetParam().clusters.empty()) {
        return;
    }
    LinuxSystemControl control(clock_, tree_.root());

    std::string clusters;
    for (const std::string level : {"hw.perflevel0", "hw.perflevel1"}) {
        if (const auto count = control.sysctlByNameInt32(level + ".physicalcpu")) {
            clusters += clusters.empty() ? "" : " + ";
            clusters += std::to_string(*count) + " " + control.sysctlByNameText(level + ".name").value_or("?");
        }
    }

    EXPECT_EQ(clusters, GetParam().clusters);
}

std::string testName(const testing::TestParamInfo<MachineLayout>& info) {
    std::string name;
    for (const char character : info.param.name) {
        if (std::isalnum(static_cast<unsigned char>(character)) != 0) {
            name += character;
        }
    }
    return name;
}

INSTANTIATE_TEST_SUITE_P(Known, MachineLayouts, testing::ValuesIn(machines()), testName);

TEST(MachineLayoutFile, NamesTheSourceOfEveryMachine) {
    std::set<std::string> names;
    for (const auto& machine : machines()) {
        EXPECT_FALSE(machine.source.empty()) << machine.name;
        names.insert(machine.name);
    }

    EXPECT_EQ(names.size(), machines().size()) << "a name occurs twice";
    EXPECT_GE(names.size(), 40U);
}

}  // namespace
}  // namespace kestro
