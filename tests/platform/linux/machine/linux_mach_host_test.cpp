#include "platform/linux/machine/linux_mach_host.h"

#include "tests/platform/linux/support.h"
#include "tests/support/allocation_counter.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace kestro {
namespace {

using test::fixture;
using test::ManualClock;
using test::TemporaryTree;
using namespace std::chrono_literals;

/// A copy of one result, whose array is released.
std::vector<std::int32_t> ticks(LinuxMachHost& host) {
    const auto answer = host.hostProcessorInfo();
    if (!answer) {
        return {};
    }
    EXPECT_EQ(answer->info.size(), answer->processorCount * 4U);
    std::vector<std::int32_t> copy(answer->info.begin(), answer->info.end());
    host.vmDeallocate(answer->info.data(), answer->info.size() * 4);
    return copy;
}

std::vector<std::int32_t> userTicks(LinuxMachHost& host) {
    std::vector<std::int32_t> result;
    const auto all = ticks(host);
    for (std::size_t index = 0; index < all.size(); index += 4) {
        result.push_back(all[index]);
    }
    return result;
}

TEST(LinuxMachHost, ListsUserSystemIdleAndNiceOfEachCore) {
    ManualClock clock;
    LinuxMachHost host(clock, fixture("vm"));

    EXPECT_EQ(ticks(host), (std::vector{1137, 1420 + 11 + 103, 110889 + 62, 0,  //
                                        3262, 2730 + 99 + 113, 105654 + 1772, 0}));
}

TEST(LinuxMachHost, ListsPerformanceCoresBeforeEfficiencyCores) {
    ManualClock clock;
    LinuxMachHost host(clock, fixture("apple-laptop"));

    const auto users = userTicks(host);

    ASSERT_EQ(users.size(), 10U);
    EXPECT_EQ(users.front(), 70000 + 2 * 1017);
    EXPECT_EQ(users[7], 70000 + 9 * 1017);
    EXPECT_EQ(users[8], 70000);
    EXPECT_EQ(users[9], 70000 + 1017);
}

TEST(LinuxMachHost, ListsEveryThreadOfAHybridDespiteALongInterruptLine) {
    ManualClock clock;
    LinuxMachHost host(clock, fixture("hybrid-laptop"));

    EXPECT_EQ(userTicks(host).size(), 20U);
}

TEST(LinuxMachHost, ListsOfflineCoresWithoutTicks) {
    ManualClock clock;
    LinuxMachHost host(clock, fixture("amd-desktop"));

    const auto all = ticks(host);
    const auto answer = host.hostProcessorInfo();

    ASSERT_EQ(all.size(), 16U * 4);
    EXPECT_EQ((std::vector(all.begin() + 20, all.begin() + 24)), (std::vector{0, 0, 0, 0}));
    ASSERT_EQ(answer->processors.size(), 16U);
    EXPECT_EQ(answer->processors[5].number, 5U);
    EXPECT_FALSE(answer->processors[5].isOnline);
    EXPECT_TRUE(answer->processors[6].isOnline);
}

TEST(LinuxMachHost, GivesTheKernelsNumberOfEachCore) {
    ManualClock clock;
    LinuxMachHost host(clock, fixture("apple-laptop"));

    const auto answer = host.hostProcessorInfo();

    ASSERT_EQ(answer->processors.size(), 10U);
    EXPECT_EQ(answer->processors.front().number, 2U);
    EXPECT_EQ(answer->processors.back().number, 1U);
}

TEST(LinuxMachHost, StartsACoreWithoutTicksWhenItFirstComesOnline) {
    ManualClock clock;
    TemporaryTree tree;
    tree.write("/sys/devices/system/cpu/present", "0-1\n")
        .write("/proc/stat", "cpu 1 1 1 1\ncpu0 10 0 0 0\nintr 0\n");
    LinuxMachHost host(clock, tree.root());
    ASSERT_EQ(userTicks(host), (std::vector{10, 0}));

    tree.write("/proc/stat", "cpu 1 1 1 1\ncpu0 11 0 0 0\ncpu1 900 0 0 0\nintr 0\n");
    EXPECT_EQ(userTicks(host), (std::vector{11, 0}));
    tree.write("/proc/stat", "cpu 1 1 1 1\ncpu0 12 0 0 0\ncpu1 905 0 0 0\nintr 0\n");
    EXPECT_EQ(userTicks(host), (std::vector{12, 5}));
}

TEST(LinuxMachHost, MeasuresNothingWhileACoreReturnsWithFreshIdleTime) {
    ManualClock clock;
    TemporaryTree tree;
    const std::string first = "cpu 1 1 1 1\ncpu0 1 0 0 1\n";
    tree.write("/proc/stat", first + "cpu1 100 0 0 5000\nintr 0\n");
    LinuxMachHost host(clock, tree.root());
    tree.write("/proc/stat", first + "intr 0\n");
    ticks(host);

    tree.write("/proc/stat", first + "cpu1 130 0 0 20\nintr 0\n");
    EXPECT_EQ(ticks(host), (std::vector{1, 0, 1, 0, 100, 0, 5000, 0}));
    tree.write("/proc/stat", first + "cpu1 131 0 0 29\nintr 0\n");
    EXPECT_EQ(ticks(host), (std::vector{1, 0, 1, 0, 101, 0, 5009, 0}));
}

TEST(LinuxMachHost, ArrangesTheCoresAnewWhenThereAreFurtherOnes) {
    ManualClock clock;
    TemporaryTree tree;
    tree.write("/sys/devices/cpu_core/cpus", "0\n")
        .write("/sys/devices/cpu_atom/cpus", "1\n")
        .write("/proc/stat", "cpu 1 1 1 1\ncpu0 10 0 0 0\ncpu1 20 0 0 0\nintr 0\n");
    LinuxMachHost host(clock, tree.root());
    ASSERT_EQ(host.hostProcessorInfo()->arrangement, 0U);

    tree.write("/sys/devices/cpu_core/cpus", "0,2\n")
        .write("/proc/stat", "cpu 1 1 1 1\ncpu0 11 0 0 0\ncpu1 22 0 0 0\ncpu2 33 0 0 0\nintr 0\n");

    EXPECT_EQ(userTicks(host), (std::vector{11, 33, 22}));
    EXPECT_EQ(host.hostProcessorInfo()->arrangement, 1U);
}

TEST(LinuxMachHost, KeepsThePositionOfACoreThatGoesOffline) {
    ManualClock clock;
    TemporaryTree tree;
    tree.write("/proc/stat", "cpu 1 1 1 1\ncpu0 10 0 0 0\ncpu1 20 0 0 0\ncpu2 30 0 0 0\nintr 0\n");
    LinuxMachHost host(clock, tree.root());
    ASSERT_EQ(userTicks(host), (std::vector{10, 20, 30}));

    tree.write("/proc/stat", "cpu 1 1 1 1\ncpu0 11 0 0 0\ncpu2 33 0 0 0\nintr 0\n");
    EXPECT_EQ(userTicks(host), (std::vector{11, 20, 33}));

    tree.write("/proc/stat", "cpu 1 1 1 1\ncpu0 12 0 0 0\ncpu1 25 0 0 0\ncpu2 34 0 0 0\nintr 0\n");
    EXPECT_EQ(userTicks(host), (std::vector{12, 25, 34}));
}

TEST(LinuxMachHost, TicksNeverGoBackwards) {
    ManualClock clock;
    TemporaryTree tree;
    tree.write("/proc/stat", "cpu 1 1 1 1\ncpu0 100 30 20 1000 50\nintr 0\n");
    LinuxMachHost host(clock, tree.root());
    ASSERT_EQ(ticks(host), (std::vector{100, 20, 1050, 30}));

    tree.write("/proc/stat", "cpu 1 1 1 1\ncpu0 106 30 20 1000 45\nintr 0\n");
    EXPECT_EQ(ticks(host), (std::vector{106, 20, 1050, 30}));

    tree.write("/proc/stat", "cpu 1 1 1 1\ncpu0 107 31 22 0 0\nintr 0\n");
    EXPECT_EQ(ticks(host), (std::vector{107, 22, 1050, 31}));

    tree.write("/proc/stat", "cpu 1 1 1 1\ncpu0 107 31 22 40 2\nintr 0\n");
    EXPECT_EQ(ticks(host), (std::vector{107, 22, 1092, 31}));
}

TEST(LinuxMachHost, CountsEachTickOnceAfterADip) {
    ManualClock clock;
    TemporaryTree tree;
    tree.write("/proc/stat", "cpu 1 1 1 1\ncpu0 100 30 20 1000 50\nintr 0\n");
    LinuxMachHost host(clock, tree.root());
    tree.write("/proc/stat", "cpu 1 1 1 1\ncpu0 100 30 20 1000 45\nintr 0\n");
    ASSERT_EQ(ticks(host), (std::vector{100, 20, 1050, 30}));

    tree.write("/proc/stat", "cpu 1 1 1 1\ncpu0 100 30 20 1000 48\nintr 0\n");
    EXPECT_EQ(ticks(host), (std::vector{100, 20, 1050, 30}));
    tree.write("/proc/stat", "cpu 1 1 1 1\ncpu0 100 30 20 1100 50\nintr 0\n");
    EXPECT_EQ(ticks(host), (std::vector{100, 20, 1150, 30}));
}

TEST(LinuxMachHost, TicksWrapPast32Bits) {
    ManualClock clock;
    TemporaryTree tree;
    tree.write("/proc/stat", "cpu 1 1 1 1\ncpu0 4294967290 0 0 0\nintr 0\n");
    LinuxMachHost host(clock, tree.root());
    ASSERT_EQ(userTicks(host), (std::vector{-6}));

    tree.write("/proc/stat", "cpu 1 1 1 1\ncpu0 4294967301 0 0 0\nintr 0\n");

    EXPECT_EQ(userTicks(host), (std::vector{5}));
}

TEST(LinuxMachHost, AppendsACoreThatAppearsLater) {
    ManualClock clock;
    TemporaryTree tree;
    tree.write("/proc/stat", "cpu 1 1 1 1\ncpu0 10 0 0 0\ncpu2 30 0 0 0\nintr 0\n");
    LinuxMachHost host(clock, tree.root());
    ASSERT_EQ(userTicks(host), (std::vector{10, 30}));

    tree.write("/proc/stat", "cpu 1 1 1 1\ncpu0 11 0 0 0\ncpu1 5 0 0 0\ncpu2 31 0 0 0\nintr 0\n");

    EXPECT_EQ(userTicks(host), (std::vector{11, 31, 5}));
}

TEST(LinuxMachHost, ListsTheCoresAsOfConstruction) {
    ManualClock clock;
    TemporaryTree tree;
    tree.write("/proc/stat", "cpu 1 1 1 1\ncpu0 10 0 0 0\ncpu2 30 0 0 0\nintr 0\n");
    LinuxMachHost host(clock, tree.root());

    tree.write("/proc/stat", "cpu 1 1 1 1\ncpu0 11 0 0 0\ncpu1 5 0 0 0\ncpu2 31 0 0 0\nintr 0\n");

    EXPECT_EQ(userTicks(host), (std::vector{11, 31, 5}));
}

TEST(LinuxMachHost, ReadsEnoughForManyCores) {
    ManualClock clock;
    TemporaryTree tree;
    std::string text = "cpu  1 2 3 4 5 6 7 8 9 10\n";
    for (int cpu = 0; cpu < 700; ++cpu) {
        text += "cpu" + std::to_string(cpu) + " 1000000 2000 3000000 40000000 5000 6000 7000 8000 0 0\n";
    }
    tree.write("/proc/stat", text + "intr" + std::string(3000000, '1') + "\n");
    LinuxMachHost host(clock, tree.root());

    EXPECT_EQ(userTicks(host).size(), 700U);
}

TEST(LinuxMachHost, FailsForMissingOrMalformedCounters) {
    ManualClock clock;
    TemporaryTree tree;
    LinuxMachHost host(clock, tree.root());

    EXPECT_FALSE(host.hostProcessorInfo());
    tree.write("/proc/stat", "");
    EXPECT_FALSE(host.hostProcessorInfo());
    tree.write("/proc/stat", "cpu 1 2 3 4\nintr 5\n");
    EXPECT_FALSE(host.hostProcessorInfo());
    tree.write("/proc/stat", std::string(5000000, '\xFF'));
    EXPECT_FALSE(host.hostProcessorInfo());
    tree.write("/proc/stat", "cpu" + std::string(5000000, '0'));
    EXPECT_FALSE(host.hostProcessorInfo());
}

TEST(LinuxMachHost, LendsDisjointArraysAndReclaimsThem) {
    ManualClock clock;
    LinuxMachHost host(clock, fixture("vm"));

    const auto first = host.hostProcessorInfo();
    const auto second = host.hostProcessorInfo();
    ASSERT_TRUE(first && second);
    EXPECT_NE(first->info.data(), second->info.data());
    host.vmDeallocate(first->info.data(), first->info.size() * 4);
    const auto third = host.hostProcessorInfo();

    ASSERT_TRUE(third);
    EXPECT_EQ(third->info.data(), first->info.data());
}

TEST(LinuxMachHost, IgnoresAnArrayThatIsNotItsOwn) {
    ManualClock clock;
    LinuxMachHost host(clock, fixture("vm"));
    std::int32_t stranger = 0;

    host.vmDeallocate(&stranger, 4);
    host.vmDeallocate(nullptr, 0);

    EXPECT_TRUE(host.hostProcessorInfo());
}

TEST(LinuxMachHost, AllocatesNothingInSteadyState) {
    ManualClock clock;
    LinuxMachHost host(clock, fixture("amd-desktop"));
    auto held = host.hostProcessorInfo();
    for (int tick = 0; tick < 2; ++tick) {
        const auto next = host.hostProcessorInfo();
        ASSERT_TRUE(held && next);
        host.vmDeallocate(held->info.data(), held->info.size() * 4);
        held = next;
    }
    ASSERT_TRUE(host.hostStatistics64());

    const auto before = test::allocationsOfThisThread();
    for (int tick = 0; tick < 10; ++tick) {
        clock.advance(1s);
        const auto next = host.hostProcessorInfo();
        host.vmDeallocate(held->info.data(), held->info.size() * 4);
        held = next;
        host.hostStatistics64();
    }

    EXPECT_EQ(test::allocationsOfThisThread(), before);
}

TEST(LinuxMachHost, ReportsThePageSize) {
    ManualClock clock;

    EXPECT_EQ(LinuxMachHost(clock, fixture("vm"), 16384).hostPageSize(), 16384U);
    EXPECT_GE(LinuxMachHost(clock, fixture("vm")).hostPageSize().value_or(0), 4096U);
}

}  // namespace
}  // namespace kestro
