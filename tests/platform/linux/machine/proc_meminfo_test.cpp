#include "platform/linux/machine/proc_meminfo.h"

#include <gtest/gtest.h>

#include <string>

namespace kestro {
namespace {

constexpr std::size_t page = 4096;

std::uint64_t usedPages(const VirtualMemoryStatistics& statistics) {
    return std::uint64_t{statistics.activeCount} + statistics.wireCount + statistics.compressorPageCount;
}

TEST(ParseMemoryInfo, ReadsTheFiguresInBytes) {
    const auto info = parseMemoryInfo(
        "MemTotal:       1000 kB\nMemFree:         200 kB\nMemAvailable:    600 kB\nUnevictable: 10 kB\n"
        "SwapTotal:  50 kB\nSwapFree:  30 kB\nZswap: 7 kB\nSUnreclaim: 20 kB\nKernelStack: 5 kB\n"
        "PageTables: 4 kB\nPercpu: 1 kB\n");

    EXPECT_EQ(info, (MemoryInfo{.total = 1024000,
                                .free = 204800,
                                .available = 614400,
                                .swapTotal = 51200,
                                .swapFree = 30720,
                                .zswapPool = 7168,
                                .unreclaimable = 40960}));
}

TEST(ParseMemoryInfo, FindsTheFiguresInAnyOrder) {
    const auto info =
        parseMemoryInfo("MemAvailable: 600 kB\nSwapFree: 1 kB\nMemTotal: 1000 kB\nSwapTotal: 2 kB\n");

    ASSERT_TRUE(info);
    EXPECT_EQ(info->total, 1024000U);
    EXPECT_EQ(info->available, 614400U);
    EXPECT_EQ(info->swapTotal, 2048U);
    EXPECT_EQ(info->swapFree, 1024U);
}

TEST(ParseMemoryInfo, EstimatesAvailableMemoryOnOldKernels) {
    const auto info = parseMemoryInfo(
        "MemTotal: 1000 kB\nMemFree: 200 kB\nBuffers: 30 kB\nCached: 300 kB\nShmem: 100 kB\nSReclaimable: 40 "
        "kB\n");

    ASSERT_TRUE(info);
    EXPECT_EQ(info->available, (200 + 30 + 300 + 40 - 100) * 1024U);
}

TEST(ParseMemoryInfo, KeepsEveryFigureWithinTheTotal) {
    const auto info =
        parseMemoryInfo("MemTotal: 10 kB\nMemFree: 20 kB\nMemAvailable: 30 kB\nSwapTotal: 1 kB\nSwapFree: 2 kB\n");

    ASSERT_TRUE(info);
    EXPECT_EQ(info->free, info->total);
    EXPECT_EQ(info->available, info->total);
    EXPECT_EQ(info->swapFree, info->swapTotal);
}

TEST(ParseMemoryInfo, IsAbsentWithoutATotal) {
    EXPECT_FALSE(parseMemoryInfo(""));
    EXPECT_FALSE(parseMemoryInfo("MemTotal: 0 kB\n"));
    EXPECT_FALSE(parseMemoryInfo("MemTotal: lots\n"));
    EXPECT_FALSE(parseMemoryInfo("MemTotal: 18446744073709551615 kB\n"));
    EXPECT_FALSE(parseMemoryInfo("MemTotal:1000\xFF kB\n"));
    EXPECT_FALSE(parseMemoryInfo(std::string(100000, '\0')));
}

TEST(VirtualMemoryStatistics, AddsUpToWhatLinuxToolsReportAsUsed) {
    const MemoryInfo info{.total = 1000 * page,
                          .free = 200 * page,
                          .available = 600 * page,
                          .zswapPool = 30 * page,
                          .unreclaimable = 100 * page};

    const auto statistics = virtualMemoryStatistics(info, MemoryPools{.zramPool = 20 * page}, page);

    EXPECT_EQ(usedPages(statistics), 400U);
    EXPECT_EQ(statistics.compressorPageCount, 50U);
    EXPECT_EQ(statistics.wireCount, 100U);
    EXPECT_EQ(statistics.activeCount, 250U);
    EXPECT_EQ(statistics.freeCount, 200U);
    EXPECT_EQ(statistics.inactiveCount, 400U);
}

TEST(VirtualMemoryStatistics, CountsTheZfsCacheAboveItsMinimumAsReclaimable) {
    const MemoryInfo info{.total = 1000 * page, .free = 200 * page, .available = 300 * page};

    const auto statistics = virtualMemoryStatistics(info, MemoryPools{.reclaimableFileCache = 250 * page}, page);

    EXPECT_EQ(usedPages(statistics), 450U);
    EXPECT_EQ(statistics.inactiveCount, 350U);
}

TEST(VirtualMemoryStatistics, NeverAssignsAShareBeyondTheUsedMemory) {
    const MemoryInfo info{.total = 100 * page,
                          .free = 95 * page,
                          .available = 90 * page,
                          .zswapPool = 4 * page,
                          .unreclaimable = ~std::uint64_t{0}};

    const auto statistics = virtualMemoryStatistics(info, MemoryPools{}, page);

    EXPECT_EQ(statistics.compressorPageCount, 4U);
    EXPECT_EQ(statistics.wireCount, 6U);
    EXPECT_EQ(statistics.activeCount, 0U);
    EXPECT_EQ(statistics.inactiveCount, 0U);
}

TEST(VirtualMemoryStatistics, ToleratesPoolsOfAbsurdSizes) {
    const MemoryInfo info{.total = 100 * page, .free = 0, .available = 50 * page, .zswapPool = ~std::uint64_t{0}};
    const MemoryPools pools{.zramPool = ~std::uint64_t{0}, .reclaimableFileCache = ~std::uint64_t{0}};

    const auto statistics = virtualMemoryStatistics(info, pools, page);

    EXPECT_EQ(usedPages(statistics), 0U);
    EXPECT_EQ(statistics.inactiveCount, 100U);
}

TEST(ParseZramPool, ReadsTheThirdNumber) {
    EXPECT_EQ(parseZramPool(" 1073741824 268435456 314572800        0 314572800 2731 0 0 0\n"), 314572800U);
    EXPECT_FALSE(parseZramPool("1 2\n"));
    EXPECT_FALSE(parseZramPool(""));
    EXPECT_FALSE(parseZramPool("1 2 x"));
}

TEST(ParseReclaimableArc, IsTheSizeMinusTheMinimum) {
    EXPECT_EQ(parseReclaimableArc("13 1 0x01 147\nname type data\nc_min 4 1000\nc_max 4 90000\nsize 4 7000\n"),
              6000U);
    EXPECT_EQ(parseReclaimableArc("c_min 4 1000\nsize 4 700\n"), 0U);
    EXPECT_FALSE(parseReclaimableArc("size 4 7000\n"));
    EXPECT_FALSE(parseReclaimableArc("c_min 4 many\nsize 4 7000\n"));
}

}  // namespace
}  // namespace kestro
