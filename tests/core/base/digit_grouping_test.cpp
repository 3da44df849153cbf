#include "core/base/digit_grouping.h"

#include "tests/support/temporary_directory.h"

#include <gtest/gtest.h>
#include <locale.h>

#include <clocale>
#include <cstdlib>
#include <limits>
#include <string>

namespace kestro {
namespace {

/// A user with French number formats in ISO 8859-1, where the separator is the byte A0, and UTF-8 for everything
/// else.
class NumbersInLatin1 {
public:
    NumbersInLatin1() {
        const std::string make = "localedef --no-archive -i fr_FR -f ISO-8859-1 " + (directory_ / name);
        isMade_ = std::system(make.c_str()) == 0;
        setenv("LOCPATH", directory_.path().c_str(), 1);
        setenv("LANG", "C.UTF-8", 1);
        setenv("LC_NUMERIC", name, 1);
        unsetenv("LC_ALL");
    }
    ~NumbersInLatin1() {
        for (const char* variable : {"LOCPATH", "LANG", "LC_NUMERIC"}) {
            unsetenv(variable);
        }
    }
    NumbersInLatin1(const NumbersInLatin1&) = delete;
    NumbersInLatin1& operator=(const NumbersInLatin1&) = delete;

    bool isMade() const { return isMade_; }

private:
    static constexpr auto name = "fr_FR.ISO-8859-1";

    TemporaryDirectory directory_;
    bool isMade_ = false;
};

TEST(DigitGrouping, GroupsThousands) {
    EXPECT_EQ(groupedDigits(0, DigitGrouping::english()), "0");
    EXPECT_EQ(groupedDigits(999, DigitGrouping::english()), "999");
    EXPECT_EQ(groupedDigits(1000, DigitGrouping::english()), "1,000");
    EXPECT_EQ(groupedDigits(1234567, DigitGrouping::english()), "1,234,567");
}

TEST(DigitGrouping, ExcludesTheSignFromTheGroups) {
    EXPECT_EQ(groupedDigits(-100, DigitGrouping::english()), "-100");
    EXPECT_EQ(groupedDigits(-1234, DigitGrouping::english()), "-1,234");
    EXPECT_EQ(groupedDigits(std::numeric_limits<std::int64_t>::min(), DigitGrouping::english()),
              "-9,223,372,036,854,775,808");
}

TEST(DigitGrouping, SupportsUnevenGroups) {
    EXPECT_EQ(groupedDigits(123456789, {",", "\3\2"}), "12,34,56,789");
}

TEST(DigitGrouping, StopsGroupingAtAnEndMark) {
    EXPECT_EQ(groupedDigits(123456789, {".", "\3\x7f"}), "123456.789");
    EXPECT_EQ(groupedDigits(123456789, {".", std::string("\3\0", 2)}), "123456.789");
}

TEST(DigitGrouping, GroupsNothingWithoutSeparatorOrSizes) {
    EXPECT_EQ(groupedDigits(1234567, {"", "\3"}), "1234567");
    EXPECT_EQ(groupedDigits(1234567, {",", ""}), "1234567");
}

TEST(DigitGrouping, FallsBackToEnglishForAnUnknownOrPlainLocale) {
    EXPECT_EQ(DigitGrouping::ofLocale("C"), DigitGrouping::english());
    EXPECT_EQ(DigitGrouping::ofLocale("C.UTF-8"), DigitGrouping::english());
    EXPECT_EQ(DigitGrouping::ofLocale("xx_NOWHERE"), DigitGrouping::english());
}

TEST(DigitGrouping, UsesTheUsersLocaleNotTheProcessesAndReturnsUtf8InAnyCharset) {
    const NumbersInLatin1 user;
    ASSERT_TRUE(user.isMade());
    ASSERT_STREQ(std::setlocale(LC_NUMERIC, nullptr), "C");

    const DigitGrouping grouping = DigitGrouping::ofLocale("");

    EXPECT_EQ(groupedDigits(1234567, grouping), "1\u00A0234\u00A0567");
}

TEST(DigitGrouping, PreservesTheLocaleOfTheProcess) {
    const locale_t before = uselocale(locale_t{});

    DigitGrouping::ofLocale("C.UTF-8");

    EXPECT_EQ(uselocale(locale_t{}), before);
}

}  // namespace
}  // namespace kestro
