#include "core/telemetry/cpu_reader.h"
#include "platform/linux/machine/linux_mach_host.h"
#include "platform/linux/machine/linux_system_control.h"
#include "tests/platform/linux/support.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <utility>
#include <vector>

namespace kestro {
namespace {

/// Consecutive cores with the same figure.
using Runs = std::vector<std::pair<int, int>>;

/// What a kernel says about its processors, in the files of Documentation/admin-guide/cputopology.rst, and what
/// they are. To add a machine, add an entry.
struct Layout {
    const char* machine;
    const char* present;
    const char* online;
    const char* expected;
    const char* coreList = nullptr;
    const char* atomList = nullptr;
    Runs capacities = {};
    Runs performances = {};
    Runs frequencies = {};
};

void PrintTo(const Layout& layout, std::ostream* out) {
    *out << layout.machine;
}

const std::vector<Layout> layouts{
    // Intel: one kind, then hybrids. The kernel lists only those online (arch/x86/events/intel/core.c).
    {"Core i5-6500", "0-3", "0-3", "4 Performance"},
    {"Core i7-8700, SMT switched off", "0-11", "0-5", "12 Performance"},
    {.machine = "Core i9-10900X with two favoured cores (admin-guide/pm/intel_pstate.rst)",
     .present = "0-19",
     .online = "0-19",
     .expected = "20 Performance",
     .performances = {{4, 47}, {2, 48}, {14, 45}},
     .frequencies = {{4, 4700000}, {2, 4800000}, {14, 4500000}}},
    {"Core i7-12700H", "0-19", "0-19", "12 Performance + 8 Efficiency", "0-11", "12-19"},
    {"Core i9-12900K, SMT switched off", "0-23", "0,2,4,6,8,10,12,14,16-23", "16 Performance + 8 Efficiency",
     "0,2,4,6,8,10,12,14", "16-23"},
    {"Core i9-12900K, efficiency cores parked", "0-23", "0-15", "16 Performance + 8 Efficiency", "0-15"},
    {"Core i9-12900K, SMT switched off and efficiency cores parked", "0-23", "0,2,4,6,8,10,12,14",
     "16 Performance + 8 Efficiency", "0,2,4,6,8,10,12,14"},
    {"Core i9-12900K, half of the efficiency cores parked", "0-23", "0-19", "16 Performance + 8 Efficiency",
     "0-15", "16-19"},
    {.machine = "Core i7-13650HX before Linux 5.13, equal performances (github.com/sched-ext/scx/pull/1903)",
     .present = "0-19",
     .online = "0-19",
     .expected = "12 Performance + 8 Efficiency",
     .performances = {{20, 255}},
     .frequencies = {{12, 4900000}, {8, 3600000}}},
    // AMD: preferred cores rank in steps (admin-guide/pm/amd-pstate.rst); dense cores are far below.
    {.machine = "Ryzen 9 5950X (amd_pstate_prefcore_ranking, linux-pm)",
     .present = "0-15",
     .online = "0-15",
     .expected = "16 Performance",
     .performances = {{1, 206},
                      {1, 211},
                      {1, 231},
                      {1, 226},
                      {1, 221},
                      {1, 216},
                      {1, 201},
                      {1, 196},
                      {1, 191},
                      {1, 186},
                      {1, 181},
                      {1, 176},
                      {1, 171},
                      {1, 166},
                      {2, 161}},
     .frequencies = {{16, 5276318}}},
    {.machine = "Ryzen AI Max+ 395 (github.com/cyring/CoreFreq/issues/561)",
     .present = "0-15",
     .online = "0-15",
     .expected = "16 Performance",
     .performances = {{1, 47},
                      {1, 43},
                      {1, 46},
                      {1, 41},
                      {1, 42},
                      {1, 44},
                      {1, 47},
                      {1, 45},
                      {1, 38},
                      {1, 33},
                      {1, 40},
                      {1, 37},
                      {1, 35},
                      {1, 34},
                      {1, 36},
                      {1, 39}}},
    {.machine = "Ryzen AI 9 HX 370: four cores and eight dense ones, equal capacities",
     .present = "0-23",
     .online = "0-23",
     .expected = "8 Performance + 16 Efficiency",
     .capacities = {{24, 1024}},
     .performances = {{4, 196}, {8, 125}, {4, 196}, {8, 125}}},
    {.machine = "Ryzen 5 8500G: two cores and four dense ones, told apart by frequency only",
     .present = "0-11",
     .online = "0-11",
     .expected = "4 Performance + 8 Efficiency",
     .frequencies = {{2, 5073000}, {4, 3741000}, {2, 5073000}, {4, 3741000}}},
    // Arm and Apple: capacities from the device tree, relative to the largest core.
    {.machine = "Apple M1",
     .present = "0-7",
     .online = "0-7",
     .expected = "4 Performance + 4 Efficiency",
     .capacities = {{4, 485}, {4, 1024}}},
    {.machine = "RK3588 (rockchip/rk3588-base.dtsi)",
     .present = "0-7",
     .online = "0-7",
     .expected = "4 Performance + 4 Efficiency",
     .capacities = {{4, 414}, {4, 1024}}},
    {.machine = "Google Tensor, three tiers (github.com/sched-ext/scx/pull/1992)",
     .present = "0-7",
     .online = "0-7",
     .expected = "4 Performance + 4 Efficiency",
     .capacities = {{4, 160}, {2, 498}, {2, 1024}}},
    {.machine = "Raspberry Pi 5",
     .present = "0-3",
     .online = "0-3",
     .expected = "4 Performance",
     .capacities = {{4, 1024}},
     .frequencies = {{4, 2400000}}},
    {.machine = "An Arm board with three tiers by frequency only",
     .present = "0-7",
     .online = "0-7",
     .expected = "8 Performance",
     .frequencies = {{4, 1800000}, {3, 2400000}, {1, 3000000}}},
};

class ProcessorLayouts : public testing::TestWithParam<Layout> {};

void writeRuns(test::TemporaryTree& tree, const char* attribute, const Runs& runs) {
    int cpu = 0;
    for (const auto& [count, figure] : runs) {
        for (int index = 0; index < count; ++index) {
            tree.write(fmt::format("/sys/devices/system/cpu/cpu{}/{}", cpu++, attribute),
                       fmt::format("{}\n", figure));
        }
    }
}

TEST_P(ProcessorLayouts, HaveTheClustersOfTheMachine) {
    const Layout& layout = GetParam();
    test::TemporaryTree tree;
    tree.write("/sys/devices/system/cpu/present", layout.present);
    std::string stat = "cpu 1 1 1 1\n";
    for (const auto cpu : parseCoreList(layout.online)) {
        stat += fmt::format("cpu{} 1 1 1 1\n", cpu);
    }
    tree.write("/proc/stat", stat + "intr 0\n");
    if (layout.coreList != nullptr) {
        tree.write("/sys/devices/cpu_core/cpus", layout.coreList);
    }
    if (layout.atomList != nullptr) {
        tree.write("/sys/devices/cpu_atom/cpus", layout.atomList);
    }
    writeRuns(tree, "cpu_capacity", layout.capacities);
    writeRuns(tree, "acpi_cppc/highest_perf", layout.performances);
    writeRuns(tree, "cpufreq/cpuinfo_max_freq", layout.frequencies);
    test::ManualClock clock;
    LinuxMachHost host(clock, tree.root());
    LinuxSystemControl control(clock, tree.root());

    auto cpu = CPUReader(host, control).readCPU();

    // The reader keeps its default count where there is no second kind.
    cpu.cluster1Count = cpu.coreCount > cpu.cluster0Count ? cpu.cluster1Count : 0;
    EXPECT_EQ(cpu.clusterDescription(), layout.expected);
    EXPECT_EQ(cpu.cluster0Count + cpu.cluster1Count, cpu.coreCount);
}

INSTANTIATE_TEST_SUITE_P(Known, ProcessorLayouts, testing::ValuesIn(layouts));

}  // namespace
}  // namespace kestro
