#include "platform/linux/machine/cpu_topology.h"

#include "tests/platform/linux/support.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace kestro {
namespace {

TEST(ParseCoreList, ReadsNumbersAndRanges) {
    EXPECT_EQ(parseCoreList("0-3,8,10-11\n"), (CoreSet{0, 1, 2, 3, 8, 10, 11}));
    EXPECT_EQ(parseCoreList("4,2,2-3"), (CoreSet{2, 3, 4}));
    EXPECT_EQ(parseCoreList("0-7,2-3,9"), (CoreSet{0, 1, 2, 3, 4, 5, 6, 7, 9}));
    EXPECT_EQ(parseCoreList("\n"), CoreSet{});
}

TEST(ParseCoreList, IsEmptyForMalformedText) {
    EXPECT_EQ(parseCoreList("0-3,x"), CoreSet{});
    EXPECT_EQ(parseCoreList("3-1"), CoreSet{});
    EXPECT_EQ(parseCoreList("0--3"), CoreSet{});
    EXPECT_EQ(parseCoreList("\xFF"), CoreSet{});
}

TEST(ParseCoreList, IsBoundedForAbsurdRanges) {
    EXPECT_EQ(parseCoreList("0-4294967295").size(), 8192U);
    EXPECT_EQ(parseCoreList("4294967294-4294967295"), CoreSet{});
    EXPECT_EQ(parseCoreList("8190-9000,5"), (CoreSet{5, 8190, 8191}));
    std::string repeated;
    for (int index = 0; index < 5000; ++index) {
        repeated += "0-8191,";
    }
    EXPECT_EQ(parseCoreList(repeated), CoreSet{});
}

TEST(EfficiencyCores, AreTheCoresOfLowestCapacity) {
    EXPECT_EQ(efficiencyCores({{0, 459}, {1, 459}, {2, 1024}, {3, 1024}}), (CoreSet{0, 1}));
    EXPECT_EQ(efficiencyCores({{0, 1024}, {1, 870}, {2, 320}, {3, 325}}), (CoreSet{2, 3}));
    EXPECT_EQ(efficiencyCores({{0, 100}, {1, 110}, {2, 111}, {3, 1000}}), (CoreSet{0, 1}));
    EXPECT_EQ(efficiencyCores({{0, 899}, {1, 1000}}), (CoreSet{0}));
}

TEST(EfficiencyCores, AreEmptyForNearlyEqualCores) {
    EXPECT_EQ(efficiencyCores({{0, 1024}, {1, 1009}, {2, 1024}}), CoreSet{});
    EXPECT_EQ(efficiencyCores({{0, 900}, {1, 1000}}), CoreSet{});
    EXPECT_EQ(efficiencyCores({{0, 1024}}), CoreSet{});
    EXPECT_EQ(efficiencyCores({}), CoreSet{});
}

TEST(CpuTopology, ReadsTheListsOfAnIntelHybrid) {
    const auto topology = CpuTopology::read(test::fixture("hybrid-laptop"));

    EXPECT_EQ(topology.efficiency, (CoreSet{12, 13, 14, 15, 16, 17, 18, 19}));
    EXPECT_TRUE(topology.isEfficiency(12));
    EXPECT_FALSE(topology.isEfficiency(11));
}

TEST(CpuTopology, CountsTheLowPowerIslandAmongTheEfficiencyCores) {
    test::TemporaryTree tree;
    tree.write("/sys/devices/cpu_core/cpus", "0-3\n")
        .write("/sys/devices/cpu_atom/cpus", "4-7\n")
        .write("/sys/devices/cpu_lowpower/cpus", "8-9\n");

    EXPECT_EQ(CpuTopology::read(tree.root()).efficiency, (CoreSet{4, 5, 6, 7, 8, 9}));
}

TEST(CpuTopology, ReadsTheCapacitiesOfAppleSilicon) {
    const auto topology = CpuTopology::read(test::fixture("apple-laptop"));

    EXPECT_EQ(topology.efficiency, (CoreSet{0, 1}));
    EXPECT_EQ(topology.performance, (CoreSet{2, 3, 4, 5, 6, 7, 8, 9}));
}

TEST(CpuTopology, ListsOfflineCores) {
    EXPECT_EQ(CpuTopology::read(test::fixture("amd-desktop")).present.size(), 16U);
    EXPECT_TRUE(CpuTopology::read(test::fixture("no-such-machine")).present.empty());
}

TEST(CpuTopology, TakesParkedCoresOfAHybridForEfficiencyCores) {
    test::TemporaryTree tree;
    tree.write("/sys/devices/system/cpu/present", "0-11\n").write("/sys/devices/cpu_core/cpus", "0,2-7\n");

    const auto topology = CpuTopology::read(tree.root());

    EXPECT_EQ(topology.performance, (CoreSet{0, 2, 3, 4, 5, 6, 7}));
    EXPECT_EQ(topology.efficiency, (CoreSet{8, 9, 10, 11}));
}

TEST(CpuTopology, CountsTheLastOfflineSiblingOfAHybridAmongThePerformanceCores) {
    test::TemporaryTree tree;
    tree.write("/sys/devices/system/cpu/present", "0-7\n").write("/sys/devices/cpu_core/cpus", "0,2\n");

    EXPECT_EQ(CpuTopology::read(tree.root()).efficiency, (CoreSet{4, 5, 6, 7}));
}

/// Writes an attribute of cores 0, 1, 2, ...
void writeFigures(test::TemporaryTree& tree, const std::string& attribute, const std::vector<int>& figures) {
    for (std::size_t cpu = 0; cpu < figures.size(); ++cpu) {
        tree.write("/sys/devices/system/cpu/cpu" + std::to_string(cpu) + "/" + attribute,
                   std::to_string(figures[cpu]) + "\n");
    }
}

TEST(CpuTopology, GroupsDenseCoresByTheirHighestPerformance) {
    test::TemporaryTree tree;
    writeFigures(tree, "acpi_cppc/highest_perf", {208, 203, 208, 203, 125, 125, 120, 125});
    writeFigures(tree, "cpu_capacity", {1024, 1024, 1024, 1024, 1024, 1024, 1024, 1024});

    const auto topology = CpuTopology::read(tree.root());

    EXPECT_EQ(topology.performance, (CoreSet{0, 1, 2, 3}));
    EXPECT_EQ(topology.efficiency, (CoreSet{4, 5, 6, 7}));
}

TEST(CpuTopology, DoesNotTakePreferredCoresForAKind) {
    test::TemporaryTree tree;
    writeFigures(tree, "acpi_cppc/highest_perf",
                 {226, 231, 211, 236, 216, 221, 206, 201, 196, 191, 186, 181, 166});
    writeFigures(tree, "cpufreq/cpuinfo_max_freq", {8839, 5756, 5756, 8839, 5756, 5756, 5756, 5756, 5756});

    EXPECT_EQ(CpuTopology::read(tree.root()).efficiency, CoreSet{});
}

TEST(CpuTopology, GroupsCoresByTheirMaximumFrequencyLast) {
    test::TemporaryTree tree;
    writeFigures(tree, "acpi_cppc/highest_perf", {166, 166, 166, 166});
    writeFigures(tree, "cpufreq/cpuinfo_max_freq", {3708000, 5008000, 5010000, 3708000});

    EXPECT_EQ(CpuTopology::read(tree.root()).efficiency, (CoreSet{0, 3}));
}

TEST(LowerGroup, RequiresExactlyTwoClearGroups) {
    EXPECT_EQ(lowerGroup({{0, 100}, {1, 60}, {2, 62}, {3, 98}}), (CoreSet{1, 2}));
    EXPECT_EQ(lowerGroup({{0, 100}, {1, 85}}), (CoreSet{1}));
    EXPECT_EQ(lowerGroup({{0, 100}, {1, 86}}), CoreSet{});
    EXPECT_EQ(lowerGroup({{0, 100}, {1, 80}, {2, 60}}), CoreSet{});
    EXPECT_EQ(lowerGroup({{0, 48}, {1, 46}, {2, 46}}), CoreSet{});
    EXPECT_EQ(lowerGroup({{0, 4294967295}, {1, 1}}), (CoreSet{1}));
    EXPECT_EQ(lowerGroup({{0, 1}}), CoreSet{});
    EXPECT_EQ(lowerGroup({}), CoreSet{});
}

TEST(ReadFrequencyDomains, ListsCoresThatShareAClock) {
    test::TemporaryTree tree;
    tree.write("/sys/devices/system/cpu/cpufreq/policy0/related_cpus", "0 1 2 3\n")
        .write("/sys/devices/system/cpu/cpufreq/policy4/related_cpus", "5 4\n")
        .write("/sys/devices/system/cpu/cpufreq/policy6/related_cpus", "6\n")
        .write("/sys/devices/system/cpu/cpufreq/boost", "1\n");

    EXPECT_EQ(readFrequencyDomains(tree.root()), (std::vector<CoreSet>{{0, 1, 2, 3}, {4, 5}}));
}

TEST(CpuTopology, ReportsOneKindOfCoreElsewhere) {
    for (const auto* machine : {"pc-coretemp", "amd-desktop", "vm", "container", "no-such-machine"}) {
        EXPECT_EQ(CpuTopology::read(test::fixture(machine)).efficiency, CoreSet{}) << machine;
    }
}

TEST(CpuTopology, ToleratesNonNumericCapacities) {
    test::TemporaryTree tree;
    tree.write("/sys/devices/system/cpu/cpu0/cpu_capacity", "\xFF\xFE")
        .write("/sys/devices/system/cpu/cpu1/cpu_capacity", "")
        .write("/sys/devices/system/cpu/cpu2/cpu_capacity", "0")
        .write("/sys/devices/system/cpu/cpu999999/cpu_capacity", "1024")
        .write("/sys/devices/system/cpu/cpufreq/cpu_capacity", "1")
        .write("/sys/devices/system/cpu/cpu3/cpu_capacity", std::string(200000, '1'));

    EXPECT_EQ(CpuTopology::read(tree.root()).efficiency, CoreSet{});
}

}  // namespace
}  // namespace kestro
