#include "core/base/text.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>
#include <string_view>

namespace kestro {
namespace {

using namespace std::string_view_literals;

TEST(Text, TrimsWhiteSpaceAtBothEnds) {
    EXPECT_EQ(trimmed(" \t one two\r\n"), "one two");
    EXPECT_EQ(trimmed("one"), "one");
    EXPECT_EQ(trimmed(" \n\0 "sv), "");
    EXPECT_EQ(trimmed(""), "");
}

TEST(Text, TruncatesFiguresTowardZeroWithinABillion) {
    EXPECT_EQ(wholeNumber(41.99), 41);
    EXPECT_EQ(wholeNumber(-0.9), 0);
    EXPECT_EQ(wholeNumber(std::numeric_limits<double>::quiet_NaN()), 0);
    EXPECT_EQ(wholeNumber(std::numeric_limits<double>::infinity()), 1'000'000'000);
    EXPECT_EQ(wholeNumber(-1e300), -1'000'000'000);
}

TEST(Text, FindsTextInAnyCase) {
    EXPECT_TRUE(containsLowered("SOC MTR Temp", "soc"));
    EXPECT_TRUE(containsLowered("gas gauge Battery", "battery"));
    EXPECT_FALSE(containsLowered("bat", "battery"));
    EXPECT_FALSE(containsLowered("", "soc"));
    EXPECT_FALSE(containsLowered("\xC4", "\xE4")) << "only ASCII letters are lowered";
}

TEST(Text, SplitsLinesWithAndWithoutATrailingLineBreak) {
    auto rest = "one\n\ntwo"sv;

    EXPECT_EQ(takeLine(rest), "one");
    EXPECT_EQ(takeLine(rest), "");
    EXPECT_EQ(takeLine(rest), "two");
    EXPECT_TRUE(rest.empty());
    EXPECT_EQ(takeLine(rest), "");
}

TEST(Text, SplitsFieldsAtWhiteSpace) {
    auto rest = "  a\t\tbc "sv;

    EXPECT_EQ(takeField(rest), "a");
    EXPECT_EQ(takeField(rest), "bc");
    EXPECT_EQ(takeField(rest), "");
    EXPECT_TRUE(rest.empty());
}

TEST(Text, AcceptsOnlyIntegersInRange) {
    EXPECT_EQ(parseTrimmed<std::int32_t>(" -42\n"), -42);
    EXPECT_EQ(parseTrimmed<std::uint64_t>("18446744073709551615"), 18446744073709551615ULL);
    EXPECT_FALSE(parseTrimmed<std::uint64_t>("18446744073709551616"));
    EXPECT_FALSE(parseTrimmed<std::uint32_t>("-1"));
    EXPECT_FALSE(parseTrimmed<std::int32_t>("12 kB"));
    EXPECT_FALSE(parseTrimmed<std::int32_t>(""));
    EXPECT_FALSE(parseTrimmed<std::int32_t>("N/A"));
}

TEST(Text, AcceptsOnlyFiniteDecimals) {
    EXPECT_EQ(parseTrimmed<double>("0.25\n"), 0.25);
    EXPECT_FALSE(parseTrimmed<double>("nan"));
    EXPECT_FALSE(parseTrimmed<double>("inf"));
    EXPECT_FALSE(parseTrimmed<double>("1e999"));
    EXPECT_FALSE(parseTrimmed<double>("0,25"));
}

TEST(Text, ShowsTheFirstLineTrimmedWithBlanksCollapsed) {
    EXPECT_EQ(displayText(" AMD Ryzen   7 \t5800X  \nsecond"), "AMD Ryzen 7 5800X");
    EXPECT_EQ(displayText("Apple MacBook\0other"sv), "Apple MacBook");
    EXPECT_EQ(displayText("\n\nGrün ☕\n"), "Grün ☕");
}

TEST(Text, RejectsTextThatIsEmptyUnreadableOrTooLong) {
    EXPECT_FALSE(displayText(""));
    EXPECT_FALSE(displayText(" \n\0 "sv));
    EXPECT_FALSE(displayText("bell \a"));
    EXPECT_FALSE(displayText("next line \xC2\x85"));
    EXPECT_FALSE(displayText("latin \xE9"));
    EXPECT_FALSE(displayText(std::string(257, 'x')));
    EXPECT_TRUE(displayText(std::string(256, 'x')));
}

TEST(Text, AcceptsWellFormedUtf8) {
    for (const std::string_view good : {"", "plain", "°C · ∞", "\xF0\x9F\x8E\x9B", "\xED\x9F\xBF", "\xEE\x80\x80",
                                        "\xF4\x8F\xBF\xBF", "\xC2\x80", "\xE0\xA0\x80", "\xF0\x90\x80\x80"}) {
        EXPECT_TRUE(isValidUtf8(good)) << good;
    }
}

TEST(Text, RecognisesControlCharacters) {
    for (const std::string_view control : {"\t", "\x1F.", "\x7F", "\xC2\x80", "\xC2\x9F."}) {
        EXPECT_TRUE(beginsWithControl(control)) << control;
    }
    for (const std::string_view other : {"", " ", "~", ".\t", "\xC2\xA0", "\xC3\x85"}) {
        EXPECT_FALSE(beginsWithControl(other)) << other;
    }
}

TEST(Text, RejectsInvalidUtf8) {
    for (const std::string_view bad : {"\x80", "a\xFF", "\xC3", "\xE2\x82", "\xF0\x9F\x8E", "\xC0\x80", "\xC1\xBF",
                                       "\xE0\x9F\xBF", "\xF0\x8F\xBF\xBF", "\xED\xA0\x80", "\xF4\x90\x80\x80",
                                       "\xF5\x80\x80\x80", "\xC3(", "\xE2\x82(", "\xF0\x9F\x8E("}) {
        EXPECT_FALSE(isValidUtf8(bad));
    }
}

}  // namespace
}  // namespace kestro
