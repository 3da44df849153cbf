#include "core/base/text.h"

#include <gtest/gtest.h>

#include <string_view>

namespace kestro {
namespace {

TEST(Text, TrimsWhiteSpaceAtBothEnds) {
    EXPECT_EQ(trimmed(" \t one two\r\n"), "one two");
    EXPECT_EQ(trimmed("one"), "one");
    EXPECT_EQ(trimmed(" \n "), "");
    EXPECT_EQ(trimmed(""), "");
}

TEST(Text, TakesTokensFromTheLeft) {
    std::string_view text = "  powermode \t 2";

    EXPECT_EQ(takePiece(text), "powermode");
    EXPECT_EQ(takePiece(text), "2");
    EXPECT_EQ(takePiece(text), "");
    EXPECT_EQ(text, "");
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
