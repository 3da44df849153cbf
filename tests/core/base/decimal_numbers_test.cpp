#include "core/base/text.h"
#include "tests/support/temporary_directory.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <bit>
#include <charconv>
#include <clocale>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace kestro {
namespace {

/// The standard library's result. That of macOS lacks from_chars; strtod accepts more.
std::optional<double> expected(std::string_view text) {
#ifdef __cpp_lib_to_chars
    double value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc{} && end == text.data() + text.size() ? std::optional(value) : std::nullopt;
#else
    const std::string copy(text);
    char* end = nullptr;
    const double value = std::strtod(copy.c_str(), &end);
    const bool isZero = copy.substr(0, copy.find_first_of("eE")).find_first_of("123456789") == std::string::npos;
    const bool isInRange = std::isfinite(value) && (value != 0 || isZero);
    return isInRange && end == copy.c_str() + copy.size() ? std::optional(value) : std::nullopt;
#endif
}

/// Numbers as tools print them, as computers store them, and at the limits of what a double holds.
std::vector<std::string> sampleNumbers() {
    std::mt19937_64 random(20250612);
    std::vector<std::string> texts{"0",     "-0",    "0.0",    "-0.0",   "00.50",  "1.",
                                   ".5",    "-.5",   "1e22",   "1e23",   "1e-22",  "9007199254740993",
                                   "1e308", "1e309", "-1e309", "5e-324", "2e-324", "1e-400",
                                   "0e999", "1E+5",  "1e0005", "123e-2", "0.1",    "2.2250738585072011e-308"};
    for (int i = 0; i < 3'000; ++i) {
        texts.push_back(fmt::format("{}.{}", random() % 4000, random() % 100));
        texts.push_back(fmt::format("{}e{}", random(), static_cast<int>(random() % 700) - 350));
        texts.push_back(fmt::format("-{}.{}e{}", random() % 1'000'000, random(), static_cast<int>(random() % 40)));
        texts.push_back(fmt::format("0.{:060}", random()));
    }
    return texts;
}

TEST(DecimalNumbers, AreTheClosestDoubles) {
    for (const auto& text : sampleNumbers()) {
        EXPECT_EQ(parseDecimal(text), expected(text)) << text;
    }
}

TEST(DecimalNumbers, RoundTrip) {
    std::mt19937_64 random(20250613);
    for (int i = 0; i < 3'000; ++i) {
        const double value = std::bit_cast<double>(random() & ~(std::uint64_t{1} << 62));
        EXPECT_EQ(parseDecimal(fmt::format("{}", value)), value);
        EXPECT_EQ(parseDecimal(fmt::format("{:.40e}", value)), value);
    }
    constexpr auto largest = std::numeric_limits<double>::max();
    EXPECT_EQ(parseDecimal(fmt::format("{}", largest)), largest);
}

TEST(DecimalNumbers, KeepTheSignOfZero) {
    EXPECT_TRUE(std::signbit(parseDecimal("-0.0").value()));
    EXPECT_FALSE(std::signbit(parseDecimal("0.0").value()));
}

TEST(DecimalNumbers, AreNothingElse) {
    for (const char* text : {"",     ".",  "-",  "+1", "--1", "1.2.3", "1e",  "1e+",       "1e-", "e5",    ".e5",
                             "0x10", "1f", " 1", "1 ", "1,5", "1'000", "inf", "-infinity", "nan", "nan(1)"}) {
        EXPECT_FALSE(parseDecimal(text)) << text;
    }
}

TEST(DecimalNumbers, HaveADecimalPointInEveryLocale) {
    const TemporaryDirectory directory;
    if (std::setlocale(LC_NUMERIC, "de_DE.UTF-8") == nullptr) {
        const std::string make = "localedef --no-archive -i de_DE -f UTF-8 " + (directory / "de_DE.UTF-8");
        ASSERT_EQ(std::system(make.c_str()), 0);
        setenv("LOCPATH", directory.path().c_str(), 1);
        ASSERT_NE(std::setlocale(LC_NUMERIC, "de_DE.UTF-8"), nullptr);
    }

    const auto byMultiplication = parseDecimal("0.25");
    const auto byTheLibrary = parseDecimal("0.10000000000000000000000001");
    const auto withComma = parseDecimal("0,10000000000000000000000001");

    std::setlocale(LC_NUMERIC, "C");
    unsetenv("LOCPATH");
    EXPECT_EQ(byMultiplication, 0.25);
    EXPECT_EQ(byTheLibrary, 0.1);
    EXPECT_FALSE(withComma);
}

}  // namespace
}  // namespace kestro
