#include "core/base/text.h"

#include <algorithm>
#include <array>
#include <clocale>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace kestro {

namespace {

constexpr std::size_t displayTextLimit = 256;

// Integers up to 2^53 and these powers of ten are exact doubles, so one multiplication or division of the two
// rounds correctly.
constexpr std::array powersOfTen = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                                    1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
constexpr std::uint64_t largestExact = std::uint64_t{1} << 53;
constexpr std::int64_t largestExponent = 1'000'000;

char loweredCharacter(char character) {
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
}

bool isDigit(char character) {
    return character >= '0' && character <= '9';
}

/// White space in ASCII, or a zero byte. For a letter or digit, one comparison decides.
bool isBlank(char character) {
    const auto code = static_cast<unsigned char>(character);
    return code <= ' ' && (code == ' ' || code == '\0' || (code >= '\t' && code <= '\r'));
}

/// The index of the first byte from `start` that is not blank; the size of `text` if there is none.
std::size_t skipBlanks(std::string_view text, std::size_t start = 0) {
    while (start < text.size() && isBlank(text[start])) {
        ++start;
    }
    return start;
}

/// The same for the first blank.
std::size_t findBlank(std::string_view text, std::size_t start) {
    while (start < text.size() && !isBlank(text[start])) {
        ++start;
    }
    return start;
}

/// The parts of a decimal number: digits x 10^exponent.
struct Decimal {
    std::uint64_t digits = 0;
    std::int64_t exponent = 0;
    bool isNegative = false;
    bool hasDigits = false;
    bool hasTooManyDigits = false;  ///< more than `digits` holds

    void append(char digit) {
        hasDigits = true;
        hasTooManyDigits = hasTooManyDigits || digits > largestExact;
        if (!hasTooManyDigits) {
            digits = digits * 10 + static_cast<std::uint64_t>(digit - '0');
        }
    }
};

void takeDigits(std::string_view& rest, Decimal& decimal) {
    for (; !rest.empty() && isDigit(rest.front()); rest.remove_prefix(1)) {
        decimal.append(rest.front());
    }
}

/// False: `rest` begins with no exponent.
bool takeExponent(std::string_view& rest, std::int64_t& exponent) {
    rest.remove_prefix(1);
    const bool isNegative = rest.starts_with('-');
    rest.remove_prefix(isNegative || rest.starts_with('+') ? 1 : 0);
    if (rest.empty() || !isDigit(rest.front())) {
        return false;
    }
    std::int64_t value = 0;
    for (; !rest.empty() && isDigit(rest.front()); rest.remove_prefix(1)) {
        value = std::min(value * 10 + (rest.front() - '0'), largestExponent);
    }
    exponent += isNegative ? -value : value;
    return true;
}

/// The parts of the whole of `text`; nullopt: it is not a decimal number.
std::optional<Decimal> decimalOf(std::string_view text) {
    Decimal decimal;
    decimal.isNegative = text.starts_with('-');
    text.remove_prefix(decimal.isNegative ? 1 : 0);
    takeDigits(text, decimal);
    if (text.starts_with('.')) {
        text.remove_prefix(1);
        const auto fraction = text.size();
        takeDigits(text, decimal);
        decimal.exponent -= static_cast<std::int64_t>(fraction - text.size());
    }
    if (decimal.hasDigits && (text.starts_with('e') || text.starts_with('E')) &&
        !takeExponent(text, decimal.exponent)) {
        return std::nullopt;
    }
    return decimal.hasDigits && text.empty() ? std::optional(decimal) : std::nullopt;
}

/// The C library rounds correctly, but expects the decimal point of the current locale.
std::optional<double> parseWithLibrary(std::string_view text) {
    std::string local(text);
    if (const auto point = local.find('.'); point != std::string::npos) {
        local.replace(point, 1, std::localeconv()->decimal_point);
    }
    const double value = std::strtod(local.c_str(), nullptr);
    return std::isfinite(value) ? std::optional(value) : std::nullopt;
}

}  // namespace

std::int64_t wholeNumber(double value) {
    constexpr double limit = 1e9;
    return std::isnan(value) ? 0 : static_cast<std::int64_t>(std::clamp(value, -limit, limit));
}

std::size_t utf8SequenceLength(std::string_view bytes) {
    if (bytes.empty()) {
        return 0;
    }
    const auto byteAt = [&](std::size_t i) { return static_cast<unsigned char>(bytes[i]); };
    const unsigned char lead = byteAt(0);
    if (lead < 0x80) {
        return 1;
    }
    if (lead < 0xC2 || lead > 0xF4) {
        return 0;
    }
    const std::size_t length = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    if (bytes.size() < length) {
        return 0;
    }
    // Some lead bytes restrict the range of the byte that follows (Unicode, table 3-7).
    const unsigned char lowest = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
    const unsigned char highest = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
    if (byteAt(1) < lowest || byteAt(1) > highest) {
        return 0;
    }
    for (std::size_t i = 2; i < length; ++i) {
        if ((byteAt(i) & 0xC0) != 0x80) {
            return 0;
        }
    }
    return length;
}

std::string_view trimmed(std::string_view text) {
    text.remove_prefix(skipBlanks(text));
    while (!text.empty() && isBlank(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

std::string_view takeLine(std::string_view& rest) {
    const auto end = rest.find('\n');
    const auto line = rest.substr(0, end);
    rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
    return line;
}

std::string_view takeField(std::string_view& rest) {
    const auto start = skipBlanks(rest);
    const auto end = findBlank(rest, start);
    const auto field = rest.substr(start, end - start);
    rest.remove_prefix(end);
    return field;
}

std::optional<double> parseDecimal(std::string_view text) {
    const auto decimal = decimalOf(text);
    if (!decimal) {
        return std::nullopt;
    }
    if (decimal->digits == 0 && !decimal->hasTooManyDigits) {
        return decimal->isNegative ? -0.0 : 0.0;
    }
    const auto scale = static_cast<std::size_t>(std::abs(decimal->exponent));
    if (decimal->hasTooManyDigits || decimal->digits > largestExact || scale >= powersOfTen.size()) {
        const auto value = parseWithLibrary(text);
        return value == 0 ? std::nullopt : value;
    }
    auto value = static_cast<double>(decimal->digits);
    value = decimal->exponent < 0 ? value / powersOfTen[scale] : value * powersOfTen[scale];
    return decimal->isNegative ? -value : value;
}

bool beginsWithControl(std::string_view text) {
    if (text.empty()) {
        return false;
    }
    const auto first = static_cast<unsigned char>(text.front());
    const bool isTwoByteControl = first == 0xC2 && text.size() > 1 && static_cast<unsigned char>(text[1]) < 0xA0;
    return first < 0x20 || first == 0x7F || isTwoByteControl;
}

bool isValidUtf8(std::string_view bytes) {
    const auto isAscii = [](char byte) { return static_cast<unsigned char>(byte) < 0x80; };
    for (;;) {
        bytes.remove_prefix(static_cast<std::size_t>(std::ranges::find_if_not(bytes, isAscii) - bytes.begin()));
        if (bytes.empty()) {
            return true;
        }
        const auto length = utf8SequenceLength(bytes);
        if (length == 0) {
            return false;
        }
        bytes.remove_prefix(length);
    }
}

std::optional<std::string> displayText(std::string_view text) {
    text = trimmed(text);
    text = trimmed(text.substr(0, std::min(text.find('\n'), text.find('\0'))));
    if (text.empty() || text.size() > displayTextLimit || !isValidUtf8(text)) {
        return std::nullopt;
    }
    std::string result;
    result.reserve(text.size());
    for (; !text.empty(); text.remove_prefix(utf8SequenceLength(text))) {
        if (text.front() == ' ' || text.front() == '\t') {
            if (result.back() != ' ') {
                result += ' ';
            }
        } else if (beginsWithControl(text)) {
            return std::nullopt;
        } else {
            result += text.substr(0, utf8SequenceLength(text));
        }
    }
    return result;
}

std::string lowered(std::string_view text) {
    std::string result(text);
    std::ranges::transform(result, result.begin(), loweredCharacter);
    return result;
}

bool containsLowered(std::string_view text, std::string_view part) {
    const auto isSame = [](char character, char expected) { return loweredCharacter(character) == expected; };
    return std::search(text.begin(), text.end(), part.begin(), part.end(), isSame) != text.end();
}

}  // namespace kestro
