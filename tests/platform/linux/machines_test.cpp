#include "core/telemetry/cpu_reader.h"
#include "core/telemetry/memory_reader.h"
#include "core/telemetry/network_reader.h"
#include "core/telemetry/power_reader.h"
#include "core/telemetry/process_reader.h"
#include "core/telemetry/smc_reader.h"
#include "core/telemetry/thermal_reader.h"
#include "platform/linux/battery/linux_power_sources.h"
#include "platform/linux/machine/linux_mach_host.h"
#include "platform/linux/machine/linux_process_info_service.h"
#include "platform/linux/machine/linux_system_control.h"
#include "platform/linux/network/linux_network_interfaces.h"
#include "platform/linux/process/linux_command_runner.h"
#include "platform/linux/sensors/linux_hid_event_system.h"
#include "platform/linux/sensors/linux_smc_service.h"
#include "tests/platform/linux/network/recorded_interfaces.h"
#include "tests/platform/linux/support.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kestro {
namespace {

using test::fixture;

/// What every reader reports for a captured machine.
class Machine {
public:
    explicit Machine(std::string_view name, std::size_t pageSize = 4096)
        : name_(name), root_(fixture(name)), host_(clock_, root_, pageSize) {}

    CPUTelemetry cpu() { return CPUReader(host_, control_).readCPU(); }
    MemoryTelemetry memory() { return MemoryReader(host_, control_, processInfo_).read(); }

    std::vector<FanTelemetry> fans() {
        LinuxSMCService service(clock_, root_);
        return SMCReader(service).readFans();
    }

    ThermalTelemetry thermals() {
        LinuxHIDEventSystem sensors(clock_, root_);
        return ThermalReader(sensors, processInfo_).readThermals();
    }

    PowerTelemetry power() {
        LinuxPowerSources sources(clock_, root_);
        return PowerReader(sources).read();
    }

    NetworkTelemetry network() {
        LinuxNetworkInterfaces interfaces(root_, std::make_unique<test::RecordedInterfaces>(root_));
        return NetworkReader(interfaces, clock_).read();
    }

    /// Measured from each process's start, since the list was empty before.
    std::vector<ProcessInfoItem> processes(bool sortByCPU, double uptime) {
        test::TemporaryTree tree;
        tree.write("/proc/empty", "");
        double now = uptime - 1;
        const auto clock = [&now] { return now; };
        LinuxCommandRunner runner(tree.root(), {clock, clock, [](double) {}});
        ProcessReader reader(runner);
        reader.readTopProcesses(sortByCPU, 10);
        tree.copyFrom(name_);
        now = uptime;
        return reader.readTopProcesses(sortByCPU, 10);
    }

private:
    test::ManualClock clock_;
    std::string name_;
    std::string root_;
    LinuxMachHost host_;
    LinuxSystemControl control_{clock_, root_};
    LinuxProcessInfoService processInfo_{clock_, root_};
};

constexpr std::uint64_t kibibytes(std::uint64_t count) {
    return count * 1024;
}

void expectThermals(Machine& machine, const ThermalTelemetry& expected) {
    const auto found = machine.thermals();

    EXPECT_NEAR(found.averageSoCTemp, expected.averageSoCTemp, 0.001);
    EXPECT_NEAR(found.peakDieTemp, expected.peakDieTemp, 0.001);
    EXPECT_NEAR(found.batteryTemp, expected.batteryTemp, 0.001);
    EXPECT_EQ(found.sensorCount, expected.sensorCount);
    EXPECT_EQ(found.thermalState, expected.thermalState);
}

TEST(Machines, ThePcHasFourCoresTwoFansAndNoBattery) {
    Machine machine("pc-coretemp");

    EXPECT_EQ(machine.cpu().coreCount, 4);
    EXPECT_EQ(machine.cpu().cluster0Count, 4);
    EXPECT_EQ(machine.memory(), (MemoryTelemetry{kibibytes(16308432), kibibytes(6433000), kibibytes(6152636),
                                                 kibibytes(280364), 0, kibibytes(7564228), kibibytes(2311204),
                                                 kibibytes(262144), kibibytes(2097148), "Normal"}));
    EXPECT_EQ(machine.fans(), (std::vector<FanTelemetry>{{0, "Left Fan", 812, 812, 0, 7800},
                                                         {1, "Right Fan", 1043, 1043, 0, 7800}}));
    expectThermals(machine, {46.2, 48, 32, 11, "Nominal"});
    EXPECT_EQ(machine.power(), PowerTelemetry::initial());
    EXPECT_EQ(machine.network(), (NetworkTelemetry{0, 0, "eno1", "192.168.1.23"}));
}

TEST(Machines, TheHybridLaptopHasTwoKindsOfCoresAndRunsOnItsBattery) {
    Machine machine("hybrid-laptop");

    EXPECT_EQ(machine.cpu().clusterDescription(), "12 Performance + 8 Efficiency");
    EXPECT_EQ(machine.memory(),
              (MemoryTelemetry{kibibytes(32562180), kibibytes(14749836), kibibytes(13986160), kibibytes(763676), 0,
                               kibibytes(16608896), kibibytes(1203448), 0, kibibytes(8388604), "Normal"}));
    EXPECT_EQ(machine.fans(), (std::vector<FanTelemetry>{{0, "Left Fan", 2731, 2731, 1200, 7800},
                                                         {1, "Right Fan", 0, 0, 1200, 7800}}));
    expectThermals(machine, {842.5 / 15, 61, 32, 20, "Nominal"});
    EXPECT_EQ(machine.power(),
              (PowerTelemetry{true, false, false, 1946, 3432, 100.0 * 1946 / 3432, "Normal", 182}));
    EXPECT_EQ(machine.network(), (NetworkTelemetry{0, 0, "wlp0s20f3", "192.168.178.40"}));
}

TEST(Machines, TheAmdDesktopHasAGraphicsFanAndCompressedMemory) {
    Machine machine("amd-desktop");

    EXPECT_EQ(machine.cpu().coreCount, 16) << "one is offline";
    EXPECT_EQ(machine.cpu().cluster0Count, 16);
    EXPECT_EQ(machine.memory(),
              (MemoryTelemetry{kibibytes(65762304), kibibytes(33949960), kibibytes(32334284), kibibytes(1103676),
                               kibibytes(512000), kibibytes(27608896), kibibytes(4203448), kibibytes(1048576),
                               kibibytes(16777212), "Warning"}));
    EXPECT_EQ(machine.fans(), (std::vector<FanTelemetry>{{0, "Fan #1", 0, 0, 0, 3300}}));
    expectThermals(machine, {60.1875, 62.125, 32, 6, "Nominal"});
    EXPECT_EQ(machine.power(), PowerTelemetry::initial());
    EXPECT_EQ(machine.network(), (NetworkTelemetry{0, 0, "bond0", "10.0.0.17"}));
}

TEST(Machines, TheAppleLaptopIsHeldAtItsChargeLimit) {
    Machine machine("apple-laptop", 16384);

    EXPECT_EQ(machine.cpu().clusterDescription(), "8 Performance + 2 Efficiency");
    EXPECT_EQ(machine.memory(),
              (MemoryTelemetry{kibibytes(15975936), kibibytes(7163584), kibibytes(6803216), kibibytes(360368), 0,
                               kibibytes(7608896), kibibytes(1203456), 0, kibibytes(8388480), "Normal"}));
    EXPECT_EQ(machine.fans(), (std::vector<FanTelemetry>{{0, "Left Fan", 1999, 2000, 1200, 5777},
                                                         {1, "Right Fan", 2160, 2160, 1200, 6241}}));
    expectThermals(machine, {36, 38.2, 31.55, 6, "Nominal"});
    EXPECT_EQ(machine.power(),
              (PowerTelemetry{true, false, true, 4249, 5311, 100.0 * 4249 / 5311, "Normal", std::nullopt}));
    EXPECT_EQ(machine.network(), (NetworkTelemetry{0, 0, "wlan0", "10.1.2.3"}));
}

TEST(Machines, TheVirtualMachineReadsAsFallbacks) {
    Machine machine("vm");

    EXPECT_EQ(machine.cpu().coreCount, 2);
    EXPECT_EQ(machine.memory().totalBytes, kibibytes(24684092));
    EXPECT_EQ(machine.memory().usedBytes, kibibytes(287272));
    EXPECT_EQ(machine.memory().swapTotalBytes, 0U);
    EXPECT_TRUE(machine.fans().empty());
    expectThermals(machine, {50, 50, 32, 0, "Nominal"});
    EXPECT_EQ(machine.power(), PowerTelemetry::initial());
    EXPECT_EQ(machine.network(), (NetworkTelemetry{0, 0, "eth0", "10.10.0.5"}));
}

TEST(Machines, TheContainerHasItsOneInterface) {
    Machine machine("container");

    EXPECT_EQ(machine.cpu().coreCount, 2);
    EXPECT_EQ(machine.memory().usedBytes, kibibytes(284808));
    EXPECT_EQ(machine.memory().pressureLevel, "Normal");
    EXPECT_TRUE(machine.fans().empty());
    expectThermals(machine, {50, 50, 32, 0, "Nominal"});
    EXPECT_EQ(machine.power(), PowerTelemetry::initial());
    EXPECT_EQ(machine.network(), (NetworkTelemetry{0, 0, "eth0", "172.17.0.2"}));
}

TEST(Machines, TheHybridLaptopListsItsProcesses) {
    Machine machine("hybrid-laptop");

    const auto byProcessor = machine.processes(true, 3661);
    const auto byMemory = machine.processes(false, 3661);

    ASSERT_EQ(byProcessor.size(), 3U);
    EXPECT_EQ(byProcessor[0].id, 4312);
    EXPECT_EQ(byProcessor[0].name, "Isolated Web (a) Co");
    EXPECT_DOUBLE_EQ(byProcessor[0].cpuPercent, 42.8);
    EXPECT_DOUBLE_EQ(byProcessor[0].memoryMB, 262144.0 * static_cast<double>(sysconf(_SC_PAGESIZE)) / 1048576);
    EXPECT_EQ(byProcessor[1].id, 87);
    EXPECT_EQ(byProcessor[1].name, "kworker\u2215u40:3-events_unbound");
    EXPECT_DOUBLE_EQ(byProcessor[1].cpuPercent, 0.5);
    EXPECT_EQ(byProcessor[1].memoryString, "0 MB");
    ASSERT_EQ(byMemory.size(), 3U);
    EXPECT_EQ(byMemory[1].id, 1);
    EXPECT_EQ(byMemory[1].fullCommand, "systemd");
    EXPECT_DOUBLE_EQ(byMemory[1].cpuPercent, 0.2);
}

}  // namespace
}  // namespace kestro
