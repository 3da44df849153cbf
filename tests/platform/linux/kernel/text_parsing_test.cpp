#include "platform/linux/kernel/text_parsing.h"

#include <gtest/gtest.h>

using namespace std::string_view_literals;

namespace kestro {

TEST(TextParsing, SplitsLinesWithAndWithoutATrailingLineBreak) {
    auto rest = "one\n\ntwo"sv;

    EXPECT_EQ(takeLine(rest), "one");
    EXPECT_EQ(takeLine(rest), "");
    EXPECT_EQ(takeLine(rest), "two");
    EXPECT_TRUE(rest.empty());
    EXPECT_EQ(takeLine(rest), "");
}

TEST(TextParsing, SplitsFieldsAtBlanksAndTabs) {
    auto rest = "  a\t\tbc "sv;

    EXPECT_EQ(takeField(rest), "a");
    EXPECT_EQ(takeField(rest), "bc");
    EXPECT_EQ(takeField(rest), "");
}

TEST(TextParsing, AcceptsOnlyIntegersInRange) {
    EXPECT_EQ(parseInteger<std::int32_t>(" -42\n"), -42);
    EXPECT_EQ(parseInteger<std::uint64_t>("18446744073709551615"), 18446744073709551615ULL);
    EXPECT_FALSE(parseInteger<std::uint64_t>("18446744073709551616"));
    EXPECT_FALSE(parseInteger<std::uint32_t>("-1"));
    EXPECT_FALSE(parseInteger<std::int32_t>("12 kB"));
    EXPECT_FALSE(parseInteger<std::int32_t>(""));
    EXPECT_FALSE(parseInteger<std::int32_t>("N/A"));
}

TEST(TextParsing, AcceptsOnlyFiniteDecimals) {
    EXPECT_EQ(parseDecimal("0.25\n"), 0.25);
    EXPECT_FALSE(parseDecimal("nan"));
    EXPECT_FALSE(parseDecimal("inf"));
    EXPECT_FALSE(parseDecimal("1e999"));
    EXPECT_FALSE(parseDecimal("0,25"));
}

TEST(TextParsing, ShowsTheFirstLineTrimmedWithBlanksCollapsed) {
    EXPECT_EQ(displayText(" AMD Ryzen   7 \t5800X  \nsecond"), "AMD Ryzen 7 5800X");
    EXPECT_EQ(displayText("Apple MacBook\0other"sv), "Apple MacBook");
    EXPECT_EQ(displayText("\n\nGrün ☕\n"), "Grün ☕");
}

TEST(TextParsing, RejectsTextThatIsEmptyUnreadableOrTooLong) {
    EXPECT_FALSE(displayText(""));
    EXPECT_FALSE(displayText(" \n\0 "sv));
    EXPECT_FALSE(displayText("bell \a"));
    EXPECT_FALSE(displayText("next line \xC2\x85"));
    EXPECT_FALSE(displayText("latin \xE9"));
    EXPECT_FALSE(displayText(std::string(257, 'x')));
    EXPECT_TRUE(displayText(std::string(256, 'x')));
}

TEST(TextParsing, RecognisesWellFormedUtf8) {
    EXPECT_TRUE(isValidUtf8("a\xC2\x80\xE0\xA0\x80\xF0\x90\x80\x80\xF4\x8F\xBF\xBF"));
    EXPECT_FALSE(isValidUtf8("\xC0\x80"));
    EXPECT_FALSE(isValidUtf8("\xE0\x9F\xBF"));
    EXPECT_FALSE(isValidUtf8("\xED\xA0\x80"));
    EXPECT_FALSE(isValidUtf8("\xF4\x90\x80\x80"));
    EXPECT_FALSE(isValidUtf8("\x80"));
    EXPECT_FALSE(isValidUtf8("\xE2\x82"));
}

}  // namespace kestro
