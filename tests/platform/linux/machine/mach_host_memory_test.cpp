#include "platform/linux/machine/linux_mach_host.h"
#include "tests/platform/linux/support.h"

#include <gtest/gtest.h>

#include <string>

namespace kestro {
namespace {

using test::fixture;
using test::ManualClock;
using test::TemporaryTree;
using namespace std::chrono_literals;

std::uint64_t usedKibibytes(LinuxMachHost& host) {
    const auto statistics = host.hostStatistics64();
    return !statistics ? 0
                       : (std::uint64_t{statistics->activeCount} + statistics->wireCount +
                          statistics->compressorPageCount) *
                             host.hostPageSize().value_or(0) / 1024;
}

TEST(MachHostMemory, CountsUnavailableMemoryAsUsedOnEveryMachine) {
    ManualClock clock;
    LinuxMachHost pc(clock, fixture("pc-coretemp"), 4096);
    LinuxMachHost desktop(clock, fixture("amd-desktop"), 4096);
    LinuxMachHost laptop(clock, fixture("apple-laptop"), 16384);
    LinuxMachHost container(clock, fixture("container"), 4096);

    EXPECT_EQ(usedKibibytes(pc), 16308432U - 9875432U);
    EXPECT_EQ(usedKibibytes(desktop), 65762304U - 31812344U);
    EXPECT_EQ(usedKibibytes(laptop), (15975936U - 8812352U) / 16 * 16);
    EXPECT_EQ(usedKibibytes(container), 2097152U - 1812344U);
}

TEST(MachHostMemory, AddsZswapAndZramToTheCompressor) {
    ManualClock clock;
    LinuxMachHost host(clock, fixture("amd-desktop"), 4096);

    const auto statistics = host.hostStatistics64();

    ASSERT_TRUE(statistics);
    EXPECT_EQ(statistics->compressorPageCount, 204800U / 4 + 314572800U / 4096);
    EXPECT_EQ(statistics->freeCount, 4203448U / 4);
    EXPECT_EQ(statistics->inactiveCount, (31812344U - 4203448U) / 4);
}

TEST(MachHostMemory, DetectsARamDiskThatIsSetUpLater) {
    ManualClock clock;
    TemporaryTree tree;
    tree.copyFrom("vm");
    LinuxMachHost host(clock, tree.root(), 4096);
    ASSERT_EQ(host.hostStatistics64()->compressorPageCount, 0U);

    tree.write("/sys/block/zram0/disksize", "1073741824\n")
        .write("/sys/block/zram0/mm_stat", "9 9 8192 0 0 0 0\n");
    clock.advance(31s);

    EXPECT_EQ(host.hostStatistics64()->compressorPageCount, 2U);
}

TEST(MachHostMemory, CapsAbsurdRamDiskSizesAtTheUsedMemory) {
    ManualClock clock;
    TemporaryTree tree;
    tree.copyFrom("vm");
    for (const std::string disk : {"/sys/block/zram0", "/sys/block/zram1"}) {
        tree.write(disk + "/disksize", "1073741824\n").write(disk + "/mm_stat", "9 9 9223372036854775808 0\n");
    }
    LinuxMachHost host(clock, tree.root(), 4096);

    EXPECT_EQ(host.hostStatistics64()->compressorPageCount, 287272U / 4);
}

TEST(MachHostMemory, CountsTheZfsCacheAsAvailable) {
    ManualClock clock;
    TemporaryTree tree;
    tree.copyFrom("vm").write("/proc/spl/kstat/zfs/arcstats",
                              "name type data\nc_min 4 1048576\nsize 4 105906176\n");
    LinuxMachHost host(clock, tree.root(), 4096);

    EXPECT_EQ(usedKibibytes(host), 24684092U - 24396820U - 102400U);
}

TEST(MachHostMemory, HasNoStatisticsWithoutMemoryFigures) {
    ManualClock clock;
    TemporaryTree tree;
    LinuxMachHost host(clock, tree.root());

    EXPECT_FALSE(host.hostStatistics64());
    tree.write("/proc/meminfo", std::string(5000000, 'x'));
    EXPECT_FALSE(host.hostStatistics64());
}

}  // namespace
}  // namespace kestro
