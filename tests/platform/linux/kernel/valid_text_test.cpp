#include "platform/linux/kernel/valid_text.h"

#include <gtest/gtest.h>

#include <string_view>

namespace kestro {
namespace {

TEST(ValidText, KeepsValidTextAndReplacesTheRest) {
    EXPECT_EQ(validText("plain · ☕ 🍃"), "plain · ☕ 🍃");
    EXPECT_EQ(validText("\xC0\xAF"), "\xEF\xBF\xBD\xEF\xBF\xBD");            // overlong
    EXPECT_EQ(validText("\xED\xA0\x80").size(), 9u);                         // a surrogate
    EXPECT_EQ(validText("\xF4\x90\x80\x80").size(), 12u);                    // above U+10FFFF
    EXPECT_EQ(validText("\xE2\x98"), "\xEF\xBF\xBD\xEF\xBF\xBD");            // cut off
    EXPECT_EQ(validText(std::string_view("a\0b\x7f\xC2\x85", 6)), "a?b??");  // control characters
}

}  // namespace
}  // namespace kestro
