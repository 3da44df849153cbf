#pragma once

#include <charconv>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

namespace kestro {

/// Building blocks for the parsers of tool output, /proc and /sys. All are pure, accept arbitrary bytes, and
/// allocate nothing unless they return a string. Any thread.

/// `text` without ASCII white space and zero bytes at either end.
std::string_view trimmed(std::string_view text);

/// Removes the first line from `rest` and returns it without its line break. At the end of the text, `rest`
/// becomes empty.
std::string_view takeLine(std::string_view& rest);

/// Removes the first field, delimited by white space, from `rest` and returns it; empty when none is left.
std::string_view takeField(std::string_view& rest);

/// Removes the integer at the start of `rest` and stores it; false, changing nothing, when there is none in range.
template <std::integral Integer>
bool takeNumber(std::string_view& rest, Integer& number) {
    const auto [end, error] = std::from_chars(rest.data(), rest.data() + rest.size(), number);
    if (error != std::errc{}) {
        return false;
    }
    rest.remove_prefix(static_cast<std::size_t>(end - rest.data()));
    return true;
}

/// Parses the whole of `text` as a decimal fraction with an optional exponent, in any locale; nullopt for anything
/// else, including one out of range. The result is the closest double. Allocates only if that takes long numbers.
std::optional<double> parseDecimal(std::string_view text);

/// Parses the whole of `text` as a number; nullopt for anything else, including one out of range or not finite.
template <typename Number>
std::optional<Number> parseNumber(std::string_view text) {
    if constexpr (std::floating_point<Number>) {
        return parseDecimal(text);
    } else {
        Number value{};
        return takeNumber(text, value) && text.empty() ? std::optional(value) : std::nullopt;
    }
}

/// The same without surrounding white space and zero bytes.
template <typename Number>
std::optional<Number> parseTrimmed(std::string_view text) {
    return parseNumber<Number>(trimmed(text));
}

/// `value` truncated to the whole number that is shown. NaN counts as 0; values beyond any counter are clamped to
/// a billion.
std::int64_t wholeNumber(double value);

/// Text fit for display: the first line of `text`, trimmed, with runs of blanks collapsed. nullopt if nothing is
/// left, or for more than 256 bytes, control characters or invalid UTF-8.
std::optional<std::string> displayText(std::string_view text);

/// Converts ASCII letters to lower case; keeps other bytes.
std::string lowered(std::string_view text);

/// Whether `text`, with its ASCII letters converted to lower case, contains the non-empty `part`.
bool containsLowered(std::string_view text, std::string_view part);

/// Length in bytes of the well-formed UTF-8 sequence at the start of `bytes`: no overlong form, no surrogate,
/// nothing beyond U+10FFFF. 0: there is none.
std::size_t utf8SequenceLength(std::string_view bytes);

/// Whether the well-formed UTF-8 sequence at the start of `text` is a control character: U+0000 to U+001F, or
/// U+007F to U+009F.
bool beginsWithControl(std::string_view text);

/// Whether `bytes` is well-formed UTF-8 throughout.
bool isValidUtf8(std::string_view bytes);

}  // namespace kestro
