#include "platform/linux/machine/proc_stat.h"

#include <gtest/gtest.h>

#include <string>

namespace kestro {
namespace {

TEST(ParseProcStatCores, CountsIOWaitAsIdleAndInterruptsAndStolenTimeAsSystem) {
    std::vector<CoreTicks> cores;

    const bool isComplete =
        parseProcStatCores("cpu  9 9 9 9 9 9 9 9 9 9\ncpu0 100 20 30 4000 500 6 7 8 50 10\nintr 5\n", cores);

    EXPECT_TRUE(isComplete);
    EXPECT_EQ(cores, (std::vector{CoreTicks{0, 100, 30 + 6 + 7 + 8, 4000 + 500, 20}}));
}

TEST(ParseProcStatCores, KeepsTheNumbersOfCoresWithGaps) {
    std::vector<CoreTicks> cores;

    parseProcStatCores("cpu 1 1 1 1\ncpu0 1 2 3 4\ncpu7 5 6 7 8\nintr 5\n", cores);

    EXPECT_EQ(cores, (std::vector{CoreTicks{0, 1, 3, 4, 2}, CoreTicks{7, 5, 7, 8, 6}}));
}

TEST(ParseProcStatCores, WrapsTicksTo32Bits) {
    std::vector<CoreTicks> cores;

    parseProcStatCores("cpu0 4294967297 4294967298 4294967295 4294967290 10 1 1 1\nintr 1\n", cores);

    EXPECT_EQ(cores, (std::vector{CoreTicks{0, 1, 2, 4, 2}}));
}

TEST(ParseProcStatCores, RequestsMoreTextUntilALineOfAnotherKindBegins) {
    std::vector<CoreTicks> cores;

    EXPECT_FALSE(parseProcStatCores("", cores));
    EXPECT_FALSE(parseProcStatCores("cpu 1 2 3 4\ncpu0 1 2 3 4\n", cores));
    EXPECT_FALSE(parseProcStatCores("cpu 1 2 3 4\ncpu0 1 2 3 4\ncpu1 1 2 3", cores));
    EXPECT_EQ(cores.size(), 1U);
    EXPECT_TRUE(parseProcStatCores("cpu 1 2 3 4\ncpu0 1 2 3 4\nintr 12 3\n", cores));
}

TEST(ParseProcStatCores, SkipsMalformedLines) {
    std::vector<CoreTicks> cores;

    parseProcStatCores(
        "cpu0 1 2 3\ncpuX 1 2 3 4\ncpu1 1 2 -3 4\ncpu2 1 2 3 4x\ncpu99999 1 2 3 4\ncpu-1 1 2 3 4\n"
        "cpu3 99999999999999999999 2 3 4\ncpu4 \xFF\xFE 1 2 3\ncpu5 1 2 3 4\nintr\n",
        cores);

    EXPECT_EQ(cores, (std::vector{CoreTicks{5, 1, 3, 4, 2}}));
}

TEST(ParseProcStatCores, IsBoundedByTheLargestNumberOfCores) {
    std::string text;
    for (std::uint32_t line = 0; line < coreLimit + 10; ++line) {
        text += "cpu0 1 2 3 4\n";
    }
    std::vector<CoreTicks> cores;

    EXPECT_TRUE(parseProcStatCores(text, cores));
    EXPECT_EQ(cores.size(), coreLimit);
    parseProcStatCores("cpu8191 1 2 3 4\ncpu8192 1 2 3 4\nintr 5\n", cores);
    EXPECT_EQ(cores, (std::vector{CoreTicks{coreLimit - 1, 1, 3, 4, 2}}));
}

TEST(ParseBootTime, ReadsTheLineWhereverItIs) {
    EXPECT_EQ(parseBootTime("cpu 1 2 3 4\nintr 1 2\nbtime 1717400000\nprocesses 2\n"), 1717400000);
    EXPECT_FALSE(parseBootTime("cpu 1 2 3 4\n"));
    EXPECT_FALSE(parseBootTime("btime \n"));
    EXPECT_FALSE(parseBootTime("btime -5\n"));
    EXPECT_FALSE(parseBootTime("btimes 5\n"));
}

TEST(ParseUptime, ReadsTheFirstNumber) {
    EXPECT_EQ(parseUptime("3661.25 60012.55\n"), 3661.25);
    EXPECT_FALSE(parseUptime(""));
    EXPECT_FALSE(parseUptime("-1.0 2.0\n"));
    EXPECT_FALSE(parseUptime("1e300 2\n"));
    EXPECT_FALSE(parseUptime("abc"));
}

}  // namespace
}  // namespace kestro
