#include "platform/linux/machine/cpu_topology.h"

#include "tests/platform/linux/support.h"

#include <gtest/gtest.h>

#include <string>

namespace kestro {
namespace {

TEST(ParseCoreList, ReadsNumbersAndRanges) {
    EXPECT_EQ(parseCoreList("0-3,8,10-11\n"), (CoreSet{0, 1, 2, 3, 8, 10, 11}));
    EXPECT_EQ(parseCoreList("4,2,2-3"), (CoreSet{2, 3, 4}));
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
    EXPECT_EQ(CpuTopology::read(test::fixture("apple-laptop")).efficiency, (CoreSet{0, 1}));
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
