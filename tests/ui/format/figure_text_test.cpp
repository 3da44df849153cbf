#include "ui/format/figure_text.h"

#include <gtest/gtest.h>

#include <limits>

namespace kestro {
namespace {

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

TEST(WholeText, IsTruncatedTowardZero) {
    EXPECT_EQ(wholeText(18.7), QStringLiteral("18"));
    EXPECT_EQ(percentText(99.9), QStringLiteral("99%"));
}

TEST(OneDecimal, IsRounded) {
    EXPECT_EQ(oneDecimalText(6.07), QStringLiteral("6.1"));
    EXPECT_EQ(oneDecimalText(0), QStringLiteral("0.0"));
    EXPECT_EQ(oneDecimalText(notANumber), QStringLiteral("0.0"));
}

TEST(Gigabytes, CountInPowersOfTwo) {
    EXPECT_EQ(gigabytesText(34'359'738'368), QStringLiteral("32.0 GB"));
    EXPECT_EQ(gigabytesText(0), QStringLiteral("0.0 GB"));
    EXPECT_DOUBLE_EQ(gigabytes(1'610'612'736), 1.5);
}

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
    EXPECT_EQ(formatRate(notANumber), "0 B/s");
}

}  // namespace
}  // namespace kestro
