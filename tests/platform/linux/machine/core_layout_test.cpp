#include "platform/linux/machine/core_layout.h"

#include "tests/platform/linux/support.h"
#include "tests/support/allocation_counter.h"

#include <gtest/gtest.h>

#include <vector>

namespace kestro {
namespace {

using test::fixture;
using test::TemporaryTree;

std::vector<CoreTicks> online(const CoreSet& cores) {
    std::vector<CoreTicks> ticks;
    for (const auto cpu : cores) {
        ticks.push_back({.cpu = cpu});
    }
    return ticks;
}

TEST(CoreLayout, IncludesCoresThatAreOffline) {
    TemporaryTree tree;
    tree.write("/sys/devices/system/cpu/present", "0-3\n");
    CoreLayout layout(tree.root());

    EXPECT_TRUE(layout.follow(online({0, 2})));

    EXPECT_EQ(layout.order(), (CoreSet{0, 1, 2, 3}));
    EXPECT_EQ(layout.performanceCount(), 4U);
    EXPECT_EQ(layout.efficiencyCount(), 0U);
}

TEST(CoreLayout, ListsPerformanceCoresFirst) {
    CoreLayout layout(fixture("apple-laptop"));

    layout.follow(online({0, 1, 2, 3, 4, 5, 6, 7, 8, 9}));

    EXPECT_EQ(layout.order(), (CoreSet{2, 3, 4, 5, 6, 7, 8, 9, 0, 1}));
    EXPECT_EQ(layout.performanceCount(), 8U);
}

TEST(CoreLayout, SwitchingOnSiblingThreadsChangesNothing) {
    TemporaryTree tree;
    tree.write("/sys/devices/system/cpu/present", "0-7\n");
    CoreLayout layout(tree.root());
    layout.follow(online({0, 2, 4, 6}));

    EXPECT_FALSE(layout.follow(online({0, 1, 2, 3, 4, 5, 6, 7})));
}

TEST(CoreLayout, LearnsTheKindsOfCoresThatComeOnline) {
    TemporaryTree tree;
    tree.write("/sys/devices/system/cpu/present", "0-7\n").write("/sys/devices/cpu_core/cpus", "0-1\n");
    CoreLayout layout(tree.root());
    layout.follow(online({0, 1}));
    ASSERT_EQ(layout.performanceCount(), 2U);

    tree.write("/sys/devices/cpu_core/cpus", "0-3\n").write("/sys/devices/cpu_atom/cpus", "4-7\n");
    EXPECT_TRUE(layout.follow(online({0, 1, 2, 3, 4, 5, 6, 7})));

    EXPECT_EQ(layout.performanceCount(), 4U);
    EXPECT_EQ(layout.efficiencyCount(), 4U);
}

TEST(CoreLayout, RemembersTheKindOfACoreThatGoesOffline) {
    TemporaryTree tree;
    tree.write("/sys/devices/system/cpu/present", "0-4\n")
        .write("/sys/devices/cpu_core/cpus", "0-1\n")
        .write("/sys/devices/cpu_atom/cpus", "2-3\n");
    CoreLayout layout(tree.root());
    layout.follow(online({0, 1, 2, 3}));

    tree.write("/sys/devices/cpu_atom/cpus", "4\n");
    layout.follow(online({0, 1, 4}));

    EXPECT_EQ(layout.order(), (CoreSet{0, 1, 2, 3, 4}));
    EXPECT_EQ(layout.performanceCount(), 2U);
}

TEST(CoreLayout, GivesAnOfflineCoreTheKindOfItsFrequencyDomain) {
    TemporaryTree tree;
    tree.write("/sys/devices/system/cpu/present", "0-5\n")
        .write("/sys/devices/system/cpu/cpu0/cpu_capacity", "380\n")
        .write("/sys/devices/system/cpu/cpu4/cpu_capacity", "1024\n")
        .write("/sys/devices/system/cpu/cpufreq/policy0/related_cpus", "0 1 2 5\n")
        .write("/sys/devices/system/cpu/cpufreq/policy3/related_cpus", "3 4\n");
    CoreLayout layout(tree.root());

    layout.follow(online({0, 4}));

    EXPECT_EQ(layout.order(), (CoreSet{3, 4, 0, 1, 2, 5}));
    EXPECT_EQ(layout.performanceCount(), 2U);
}

TEST(CoreLayout, GivesAnOfflineCoreTheKindOfItsNeighbour) {
    TemporaryTree tree;
    tree.write("/sys/devices/system/cpu/present", "0-7\n")
        .write("/sys/devices/cpu_core/cpus", "1,2\n")
        .write("/sys/devices/cpu_atom/cpus", "4,6\n");
    CoreLayout layout(tree.root());

    layout.follow(online({1, 2, 4, 6}));

    EXPECT_EQ(layout.order(), (CoreSet{0, 1, 2, 3, 4, 5, 6, 7}));
    EXPECT_EQ(layout.performanceCount(), 4U);
}

TEST(CoreLayout, AppendsAnAddedCoreToItsKind) {
    TemporaryTree tree;
    tree.write("/sys/devices/cpu_core/cpus", "0,2\n").write("/sys/devices/cpu_atom/cpus", "4\n");
    CoreLayout layout(tree.root());
    layout.follow(online({0, 2, 4}));

    tree.write("/sys/devices/cpu_core/cpus", "0-2\n");
    EXPECT_TRUE(layout.follow(online({0, 1, 2, 4})));

    EXPECT_EQ(layout.order(), (CoreSet{0, 2, 1, 4}));
}

TEST(CoreLayout, TakesTheOnlyKindForPerformanceCores) {
    TemporaryTree tree;
    tree.write("/sys/devices/cpu_atom/cpus", "0-3\n");
    CoreLayout layout(tree.root());

    layout.follow(online({0, 1, 2, 3}));

    EXPECT_EQ(layout.performanceCount(), 4U);
    EXPECT_EQ(layout.efficiencyCount(), 0U);
}

TEST(CoreLayout, AllocatesNothingWhileNoCoreIsNew) {
    CoreLayout layout(fixture("hybrid-laptop"));
    const auto cores = online({0, 1, 2, 3, 12, 13});
    layout.follow(cores);

    const auto before = test::allocationsOfThisThread();
    const bool hasChanged = layout.follow(cores);
    const auto after = test::allocationsOfThisThread();

    EXPECT_FALSE(hasChanged);
    EXPECT_EQ(after, before);
}

}  // namespace
}  // namespace kestro
