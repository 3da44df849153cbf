#include "platform/linux/process/process_stat.h"

#include <gtest/gtest.h>

#include <string>

namespace kestro {
namespace {

const std::string tail =
    " S 1 1 1 0 -1 4194560 2000 0 5 0 120 34 7 8 20 0 3 0 4567 170000000 2500 18446744073709551615 1\n";

TEST(ProcessStat, ReadsTheFieldsOfOneProcess) {
    const std::string text = "812 (nginx)" + tail;
    const auto stat = parseProcessStat(text);

    ASSERT_TRUE(stat);
    EXPECT_EQ(stat->pid, 812);
    EXPECT_EQ(stat->name, "nginx");
    EXPECT_EQ(stat->processorTicks, 154u);
    EXPECT_EQ(stat->startTicks, 4567u);
    EXPECT_EQ(stat->residentPages, 2500u);
}

TEST(ProcessStat, TheNameEndsAtTheLastParenthesis) {
    const std::string text = "7 (a) S 1 (b) 9)" + tail;
    const auto stat = parseProcessStat(text);

    ASSERT_TRUE(stat);
    EXPECT_EQ(stat->name, "a) S 1 (b) 9");
    EXPECT_EQ(stat->processorTicks, 154u);
}

TEST(ProcessStat, AcceptsAnEmptyName) {
    const std::string text = "7 ()" + tail;
    const auto stat = parseProcessStat(text);

    ASSERT_TRUE(stat);
    EXPECT_EQ(stat->name, "");
}

TEST(ProcessStat, TreatsANegativeResidentSizeAsZero) {
    const auto stat =
        parseProcessStat("7 (x) S 1 1 1 0 -1 4194560 2000 0 5 0 120 34 7 8 20 0 3 0 4567 170000000 -3 1\n");

    ASSERT_TRUE(stat);
    EXPECT_EQ(stat->residentPages, 0u);
}

TEST(ProcessStat, RejectsAnythingElse) {
    const std::string whole = "812 (nginx)" + tail;

    for (std::size_t length = 0; length < whole.find(" 2500 ") + 6; ++length) {
        EXPECT_FALSE(parseProcessStat(whole.substr(0, length))) << length;
    }
    EXPECT_FALSE(parseProcessStat("-4 (x)" + tail));
    EXPECT_FALSE(parseProcessStat("0 (x)" + tail));
    EXPECT_FALSE(parseProcessStat("99999999999 (x)" + tail));
    EXPECT_FALSE(parseProcessStat(")812 (" + tail));
    EXPECT_FALSE(parseProcessStat("812 (" + std::string(5000, 'x') + ")" + tail));
    EXPECT_FALSE(parseProcessStat("812 (x) S 1 1 1 0 -1 4194560 2000 0 5 0 many 34 7 8 20 0 3 0 4567 1 2500 1\n"));
}

}  // namespace
}  // namespace kestro
