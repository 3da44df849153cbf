#pragma once

#include "core/base/text.h"

#include <charconv>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

namespace kestro {

/// Building blocks for the parsers of /proc and /sys. All are pure, accept arbitrary bytes, and allocate nothing
/// unless they return a string. Any thread.

/// `text` without leading and trailing white space, line breaks and zero bytes.
std::string_view trimmedField(std::string_view text);

/// Removes the first line from `rest` and returns it without its line break. At the end of the text, `rest`
/// becomes empty.
std::string_view takeLine(std::string_view& rest);

/// Removes the first field, delimited by blanks or tabs, from `rest`; empty when none is left.
std::string_view takeField(std::string_view& rest);

/// Parses the whole of `text`, apart from surrounding white space, as a number; nullopt for anything else,
/// including a number out of range.
template <typename Integer>
std::optional<Integer> parseInteger(std::string_view text) {
    text = trimmedField(text);
    Integer value{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc{} || end != text.data() + text.size()) {
        return std::nullopt;
    }
    return value;
}

/// The same for a finite decimal fraction such as "0.25".
std::optional<double> parseDecimal(std::string_view text);

/// Text fit for display: the first line of `text`, trimmed, with runs of blanks collapsed. nullopt if nothing is
/// left, or for more than 256 bytes, control characters or invalid UTF-8.
std::optional<std::string> displayText(std::string_view text);

/// Converts ASCII letters to lower case; keeps other bytes.
std::string lowered(std::string_view text);

}  // namespace kestro
