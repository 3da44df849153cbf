#include "platform/linux/machine/linux_system_control.h"

#include "platform/linux/machine/proc_swaps.h"
#include "tests/platform/linux/support.h"
#include "tests/support/allocation_counter.h"

#include <gtest/gtest.h>

#include <string>

namespace kestro {
namespace {

using test::fixture;
using test::ManualClock;
using test::TemporaryTree;

TEST(ParseSwaps, SumsDevicesAndFiles) {
    const auto usage = parseSwaps(
        "Filename\t\t\t\tType\t\tSize\t\tUsed\t\tPriority\n"
        "/dev/zram0                              partition\t8388604\t\t1048576\t\t100\n"
        "/home/my\\040swap\\040(deleted)           file\t\t1024\t\t24\t\t-2\n");

    ASSERT_TRUE(usage);
    EXPECT_EQ(usage->total, (8388604U + 1024U) * std::uint64_t{1024});
    EXPECT_EQ(usage->used, (1048576U + 24U) * std::uint64_t{1024});
}

TEST(ParseSwaps, IsZeroForAMachineWithoutSwap) {
    const auto usage = parseSwaps("Filename\t\t\t\tType\t\tSize\t\tUsed\t\tPriority\n");

    ASSERT_TRUE(usage);
    EXPECT_EQ(usage->total, 0U);
    EXPECT_EQ(usage->used, 0U);
}

TEST(ParseSwaps, IsAbsentForMalformedText) {
    EXPECT_FALSE(parseSwaps(""));
    EXPECT_FALSE(parseSwaps("\xFF\n"));
    EXPECT_FALSE(parseSwaps("Filename\n/dev/sda2 partition 100\n"));
    EXPECT_FALSE(parseSwaps("Filename\n/dev/sda2 partition many 0 -2\n"));
    EXPECT_FALSE(parseSwaps("Filename\n/dev/sda2 partition 18446744073709551615 0 -2\n"));
}

TEST(LinuxSystemControl, CountsLogicalCoresOfEachLevel) {
    ManualClock clock;
    LinuxSystemControl hybrid(clock, fixture("hybrid-laptop"));
    LinuxSystemControl apple(clock, fixture("apple-laptop"));

    EXPECT_EQ(hybrid.sysctlByNameInt32("hw.perflevel0.physicalcpu"), 12);
    EXPECT_EQ(hybrid.sysctlByNameInt32("hw.perflevel1.physicalcpu"), 8);
    EXPECT_EQ(apple.sysctlByNameInt32("hw.perflevel0.physicalcpu"), 8);
    EXPECT_EQ(apple.sysctlByNameInt32("hw.perflevel1.physicalcpu"), 2);
    EXPECT_EQ(apple.sysctlByNameText("hw.perflevel0.name"), "Performance");
    EXPECT_EQ(apple.sysctlByNameText("hw.perflevel1.name"), "Efficiency");
}

TEST(LinuxSystemControl, HasOnlyLevelZeroWithOneKindOfCore) {
    ManualClock clock;
    LinuxSystemControl control(clock, fixture("amd-desktop"));

    EXPECT_EQ(control.sysctlByNameInt32("hw.perflevel0.physicalcpu"), 16) << "one is offline";
    EXPECT_FALSE(control.sysctlByNameInt32("hw.perflevel1.physicalcpu"));
    EXPECT_EQ(control.sysctlByNameText("hw.perflevel0.name"), "Performance");
    EXPECT_FALSE(control.sysctlByNameText("hw.perflevel1.name"));
}

TEST(LinuxSystemControl, CountsOfflineCoresAmongTheirKind) {
    ManualClock clock;
    TemporaryTree tree;
    tree.copyFrom("apple-laptop").write("/proc/stat", "cpu 1 1 1 1\ncpu0 1 1 1 1\ncpu1 1 1 1 1\nintr 0\n");
    LinuxSystemControl control(clock, tree.root());

    EXPECT_EQ(control.sysctlByNameInt32("hw.perflevel0.physicalcpu"), 8);
    EXPECT_EQ(control.sysctlByNameInt32("hw.perflevel1.physicalcpu"), 2);
}

TEST(LinuxSystemControl, TakesTheOnlyKindOfCoreForLevelZero) {
    ManualClock clock;
    TemporaryTree tree;
    tree.write("/sys/devices/cpu_atom/cpus", "0-1\n")
        .write("/proc/stat", "cpu 1 1 1 1\ncpu0 1 1 1 1\ncpu1 1 1 1 1\nintr 0\n");
    LinuxSystemControl control(clock, tree.root());

    EXPECT_EQ(control.sysctlByNameInt32("hw.perflevel0.physicalcpu"), 2);
    EXPECT_FALSE(control.sysctlByNameInt32("hw.perflevel1.physicalcpu"));
}

TEST(LinuxSystemControl, LooksAtTheCoresOnceForAllLevels) {
    ManualClock clock;
    TemporaryTree tree;
    tree.copyFrom("hybrid-laptop");
    LinuxSystemControl control(clock, tree.root());
    ASSERT_EQ(control.sysctlByNameInt32("hw.perflevel0.physicalcpu"), 12);

    tree.remove("/proc/stat").remove("/sys/devices");

    EXPECT_EQ(control.sysctlByNameInt32("hw.perflevel1.physicalcpu"), 8);
    EXPECT_EQ(control.sysctlByNameText("hw.perflevel0.name"), "Performance");
    EXPECT_EQ(control.sysctlByNameText("hw.perflevel1.name"), "Efficiency");
}

TEST(LinuxSystemControl, SupportsOnlyTheNamesInUse) {
    ManualClock clock;
    LinuxSystemControl control(clock, fixture("vm"));

    EXPECT_FALSE(control.sysctlByNameInt32("hw.ncpu"));
    EXPECT_FALSE(control.sysctlByNameInt32("hw.model"));
    EXPECT_FALSE(control.sysctlByNameText("kern.ostype"));
    EXPECT_FALSE(control.sysctlByNameText(""));
}

TEST(LinuxSystemControl, IdentifiesTheMachine) {
    ManualClock clock;
    LinuxSystemControl control(clock, fixture("pc-coretemp"));

    EXPECT_EQ(control.sysctlByNameText("hw.model"), "Z170-A");
    EXPECT_EQ(control.sysctlByNameText("machdep.cpu.brand_string"), "Intel(R) Core(TM) i5-6500 CPU @ 3.20GHz");
}

TEST(LinuxSystemControl, ReportsSwapInBytes) {
    ManualClock clock;
    const auto usage = LinuxSystemControl(clock, fixture("amd-desktop")).swapUsage();

    ASSERT_TRUE(usage);
    EXPECT_EQ(usage->total, 16777212U * std::uint64_t{1024});
    EXPECT_EQ(usage->used, 1048576U * std::uint64_t{1024});
}

TEST(LinuxSystemControl, FallsBackToTheMemoryFiguresForSwap) {
    ManualClock clock;
    TemporaryTree tree;
    tree.write("/proc/meminfo", "MemTotal: 100 kB\nSwapTotal: 50 kB\nSwapFree: 20 kB\n");

    const auto usage = LinuxSystemControl(clock, tree.root()).swapUsage();

    ASSERT_TRUE(usage);
    EXPECT_EQ(usage->total, 51200U);
    EXPECT_EQ(usage->used, 30720U);
}

TEST(LinuxSystemControl, ReportsZerosWithoutSwap) {
    ManualClock clock;
    for (const auto* machine : {"vm", "container"}) {
        const auto usage = LinuxSystemControl(clock, fixture(machine)).swapUsage();

        ASSERT_TRUE(usage) << machine;
        EXPECT_EQ(usage->total, 0U);
    }
}

TEST(LinuxSystemControl, DerivesThePressureFromStalls) {
    ManualClock clock;
    constexpr auto name = "kern.memorystatus_vm_pressure_level";

    EXPECT_EQ(LinuxSystemControl(clock, fixture("vm")).sysctlByNameInt32(name), 1);
    EXPECT_EQ(LinuxSystemControl(clock, fixture("amd-desktop")).sysctlByNameInt32(name), 2);
}

TEST(LinuxSystemControl, FallsBackToAvailableMemoryForThePressure) {
    ManualClock clock;
    constexpr auto name = "kern.memorystatus_vm_pressure_level";
    TemporaryTree tree;
    tree.write("/proc/meminfo", "MemTotal: 1000 kB\nMemAvailable: 30 kB\n");
    LinuxSystemControl control(clock, tree.root());

    EXPECT_EQ(control.sysctlByNameInt32(name), 4);
    tree.write("/proc/pressure/memory", std::string(5000000, 'x'));
    EXPECT_EQ(control.sysctlByNameInt32(name), 4);
    tree.write("/proc/pressure/memory", "some avg10=0.00\nfull avg10=0.00\n");
    EXPECT_EQ(control.sysctlByNameInt32(name), 1);
}

TEST(LinuxSystemControl, AReclaimableCacheDoesNotCountAsPressure) {
    ManualClock clock;
    TemporaryTree tree;
    tree.write("/proc/meminfo", "MemTotal: 64000000 kB\nMemAvailable: 2000000 kB\n")
        .write("/proc/spl/kstat/zfs/arcstats", "name type data\nc_min 4 1048576\nsize 4 58000000000\n");
    LinuxSystemControl control(clock, tree.root());

    EXPECT_EQ(control.sysctlByNameInt32("kern.memorystatus_vm_pressure_level"), 1);
}

TEST(LinuxSystemControl, ReportsTheBootTime) {
    ManualClock clock;
    const auto time = LinuxSystemControl(clock, fixture("pc-coretemp")).bootTime();

    ASSERT_TRUE(time);
    EXPECT_EQ(time->seconds, 1717400000);
    EXPECT_EQ(time->microseconds, 0);
}

TEST(LinuxSystemControl, FallsBackToTheUptimeForTheBootTime) {
    ManualClock clock;
    TemporaryTree tree;
    tree.write("/proc/uptime", "100.25 50.00\n");

    const auto time = LinuxSystemControl(clock, tree.root()).bootTime();

    ASSERT_TRUE(time);
    EXPECT_EQ(time->seconds, 1'700'000'000 - 101);
    EXPECT_EQ(time->microseconds, 750'000);
}

TEST(LinuxSystemControl, ReportsNothingOnAMachineWithoutFiles) {
    ManualClock clock;
    LinuxSystemControl control(clock, fixture("no-such-machine"));

    EXPECT_FALSE(control.sysctlByNameInt32("hw.perflevel0.physicalcpu"));
    EXPECT_FALSE(control.sysctlByNameInt32("kern.memorystatus_vm_pressure_level"));
    EXPECT_FALSE(control.sysctlByNameText("hw.perflevel0.name"));
    EXPECT_FALSE(control.swapUsage());
    EXPECT_FALSE(control.bootTime());
}

TEST(LinuxSystemControl, ReadsSwapAndPressureWithoutAllocating) {
    ManualClock clock;
    LinuxSystemControl control(clock, fixture("amd-desktop"));
    control.swapUsage();
    control.sysctlByNameInt32("kern.memorystatus_vm_pressure_level");

    const auto before = test::allocationsOfThisThread();
    const auto usage = control.swapUsage();
    const auto level = control.sysctlByNameInt32("kern.memorystatus_vm_pressure_level");
    const auto after = test::allocationsOfThisThread();

    EXPECT_TRUE(usage && level);
    EXPECT_EQ(after, before);
}

}  // namespace
}  // namespace kestro
