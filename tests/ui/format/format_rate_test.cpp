#include "ui/format/format_rate.h"

#include <gtest/gtest.h>

#include <limits>

namespace kestro {
namespace {

TEST(FormatRate, ShowsMegabytesFromOneMebibyte) {
    EXPECT_EQ(formatRate(1'048'576), "1.0 MB/s");
    EXPECT_EQ(formatRate(1'258'291), "1.2 MB/s");
    EXPECT_EQ(formatRate(1'048'576.0 * 1234.56), "1234.6 MB/s");
}

TEST(FormatRate, ShowsKilobytesFromOneKibibyte) {
    EXPECT_EQ(formatRate(1'024), "1 KB/s");
    EXPECT_EQ(formatRate(245'760), "240 KB/s");
    EXPECT_EQ(formatRate(1'048'575.9), "1024 KB/s");
}

TEST(FormatRate, ShowsBytesBelowOneKibibyte) {
    EXPECT_EQ(formatRate(0), "0 B/s");
    EXPECT_EQ(formatRate(512.4), "512 B/s");
    EXPECT_EQ(formatRate(1'023.4), "1023 B/s");
}

TEST(FormatRate, TreatsNaNAsZero) {
    EXPECT_EQ(formatRate(std::numeric_limits<double>::quiet_NaN()), "0 B/s");
}

}  // namespace
}  // namespace kestro
