#include "platform/desktop/preference_json.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

namespace kestro {
namespace {

PreferenceData data(std::string_view bytes) {
    return {bytes.begin(), bytes.end()};
}

std::string encoded(const PreferenceValue& value) {
    return encodePreference(value).dump();
}

/// A value after a round trip through the text of a file.
std::optional<PreferenceValue> roundTrip(const PreferenceValue& value) {
    const auto json = parsePreferenceJson(encoded(value));
    return json ? decodePreference(*json) : std::nullopt;
}

TEST(PreferenceJson, WritesEachTypeInADistinctForm) {
    EXPECT_EQ(encoded(true), "true");
    EXPECT_EQ(encoded(std::int64_t{3}), "3");
    EXPECT_EQ(encoded(3.0), "3.0");
    EXPECT_EQ(encoded(std::string("3")), R"("3")");
    EXPECT_EQ(encoded(data("3")), R"({"json":3})");
    EXPECT_EQ(encoded(data("\xff\x01")), R"({"data":"/wE="})");
}

TEST(PreferenceJson, KeepsTypesDistinct) {
    const std::vector<PreferenceValue> values{
        true,
        false,
        std::int64_t{0},
        std::int64_t{1},
        std::numeric_limits<std::int64_t>::min(),
        std::numeric_limits<std::int64_t>::max(),
        0.0,
        1.0,
        20.0,
        1e300,
        5e-324,
        0.1,
        std::numeric_limits<double>::infinity(),
        -std::numeric_limits<double>::infinity(),
        std::string(),
        std::string("true"),
        std::string("°\0\"\\\n", 6),
        std::string("\xff\xfe"),
        data(""),
        data("true"),
        data("\"Celsius (°C)\""),
        data(R"({"b":1,"a":[48.0,null]})"),
        data(R"({ "a": 1 })"),
        data(R"({"a":1,"a":2})"),
        data("99999999999999999999"),
    };

    for (const auto& value : values) {
        EXPECT_EQ(roundTrip(value), value) << encoded(value);
    }
}

TEST(PreferenceJson, PreservesNegativeZeroAndNaN) {
    EXPECT_TRUE(std::signbit(std::get<double>(*roundTrip(-0.0))));
    EXPECT_TRUE(std::isnan(std::get<double>(*roundTrip(std::nan("")))));
}

TEST(PreferenceJson, ReadsDataBackByteForByte) {
    constexpr std::string_view alphabet = "{}[]\",:01\xc3\xa9 e-.tnul";
    std::mt19937 random(7);
    for (int round = 0; round < 2000; ++round) {
        PreferenceData bytes(random() % 12);
        std::ranges::generate(bytes, [&] { return alphabet[random() % alphabet.size()]; });

        EXPECT_EQ(roundTrip(bytes), PreferenceValue(bytes));
    }
}

TEST(PreferenceJson, RejectsUnknownForms) {
    for (const auto* text : {"null", "[1]", "{}", R"({"data":3})", R"({"data":"*"})", R"({"double":"x"})",
                             R"({"json":1,"data":""})", "18446744073709551615", R"({"other":"x"})"}) {
        EXPECT_EQ(decodePreference(*parsePreferenceJson(text)), std::nullopt) << text;
    }
}

TEST(PreferenceJson, ReadsWholeNumbersBeyond64BitsAsDoubles) {
    const auto decoded = [](const char* text) { return decodePreference(*parsePreferenceJson(text)); };

    EXPECT_EQ(decoded("9223372036854775807"), PreferenceValue(std::numeric_limits<std::int64_t>::max()));
    EXPECT_EQ(decoded("9223372036854775808"), std::nullopt);
    EXPECT_EQ(decoded("18446744073709551616"), PreferenceValue(0x1p64));
    EXPECT_EQ(decoded("99999999999999999999"), PreferenceValue(1e20));
    EXPECT_EQ(decoded("-9223372036854775809"), PreferenceValue(-0x1p63));
}

TEST(PreferenceJson, RoundsAnInexactNumberToTheNearestDouble) {
    EXPECT_EQ(parsePreferenceJson("[99999999999999999999,0.12345678901234567890]")->dump(),
              "[1e+20,0.12345678901234568]");
}

TEST(PreferenceJson, RejectsTextThatIsTooDeepTooLargeOrHasTooManyValues) {
    const std::string deep(maximumPreferenceDepth + 1, '[');
    const std::string deepClosed = deep + std::string(deep.size(), ']');
    std::string many = "[0";
    for (int element = 0; element < maximumPreferenceElements; ++element) {
        many += ",0";
    }

    EXPECT_EQ(parsePreferenceJson(deepClosed), std::nullopt);
    EXPECT_EQ(parsePreferenceJson(many + "]"), std::nullopt);
    EXPECT_EQ(parsePreferenceJson('"' + std::string(maximumPreferenceBytes, 'x') + '"'), std::nullopt);
    EXPECT_NE(parsePreferenceJson('"' + std::string(1000, '[') + '"'), std::nullopt) << "brackets in text";
    EXPECT_NE(parsePreferenceJson(R"("\"[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[")"), std::nullopt);
}

TEST(PreferenceJson, RejectsInvalidJson) {
    for (const auto* text : {"", "{", "nul", "\"\xff\"", "{\"a\":1,}", "1 2"}) {
        EXPECT_EQ(parsePreferenceJson(text), std::nullopt) << text;
    }
    EXPECT_EQ(parsePreferenceJson(std::string_view("{}\0{}", 5)), std::nullopt) << "a zero byte";
}

}  // namespace
}  // namespace kestro
