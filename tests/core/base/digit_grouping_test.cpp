#include "core/base/digit_grouping.h"

#include <gtest/gtest.h>
#include <locale.h>

#include <limits>
#include <string>

namespace kestro {
namespace {

TEST(DigitGrouping, SetsThousandsApart) {
    EXPECT_EQ(groupedDigits(0, DigitGrouping::english()), "0");
    EXPECT_EQ(groupedDigits(999, DigitGrouping::english()), "999");
    EXPECT_EQ(groupedDigits(1000, DigitGrouping::english()), "1,000");
    EXPECT_EQ(groupedDigits(1234567, DigitGrouping::english()), "1,234,567");
}

TEST(DigitGrouping, KeepsTheSignOutOfTheGroups) {
    EXPECT_EQ(groupedDigits(-100, DigitGrouping::english()), "-100");
    EXPECT_EQ(groupedDigits(-1234, DigitGrouping::english()), "-1,234");
    EXPECT_EQ(groupedDigits(std::numeric_limits<std::int64_t>::min(), DigitGrouping::english()),
              "-9,223,372,036,854,775,808");
}

TEST(DigitGrouping, FollowsUnevenGroups) {
    EXPECT_EQ(groupedDigits(123456789, {",", "\3\2"}), "12,34,56,789");
}

TEST(DigitGrouping, LeavesTheRestTogetherAfterAnEndMark) {
    EXPECT_EQ(groupedDigits(123456789, {".", "\3\x7f"}), "123456.789");
    EXPECT_EQ(groupedDigits(123456789, {".", std::string("\3\0", 2)}), "123456.789");
}

TEST(DigitGrouping, GroupsNothingWithoutSeparatorOrSizes) {
    EXPECT_EQ(groupedDigits(1234567, {"", "\3"}), "1234567");
    EXPECT_EQ(groupedDigits(1234567, {",", ""}), "1234567");
}

TEST(DigitGrouping, TakesAnUnknownOrPlainLocaleForEnglish) {
    EXPECT_EQ(DigitGrouping::ofLocale("C"), DigitGrouping::english());
    EXPECT_EQ(DigitGrouping::ofLocale("C.UTF-8"), DigitGrouping::english());
    EXPECT_EQ(DigitGrouping::ofLocale("xx_NOWHERE"), DigitGrouping::english());
}

TEST(DigitGrouping, LeavesTheLocaleOfTheProcessAsItWas) {
    const locale_t before = uselocale(locale_t{});

    DigitGrouping::ofLocale("C.UTF-8");

    EXPECT_EQ(uselocale(locale_t{}), before);
}

}  // namespace
}  // namespace kestro
