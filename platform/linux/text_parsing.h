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

/// Small pieces of which the parsers of /proc and /sys are made. All are pure, allocate nothing unless they
/// return a string, and take any bytes at all. Any thread.

/// `text` without white space, line breaks and zero bytes at both ends.
std::string_view trimmedField(std::string_view text);

/// Cuts the first line off `rest` and returns it without its line break; at the end of the text, `rest` is
/// left empty.
std::string_view takeLine(std::string_view& rest);

/// Cuts the first field, delimited by blanks or tabs, off `rest`; empty when there is none left.
std::string_view takeField(std::string_view& rest);

/// The number that the whole of `text` is, white space around it aside; nullopt for anything else, a number
/// out of range included.
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

/// Text that may be shown: the first line of `text`, trimmed, its runs of blanks made one. nullopt when
/// nothing is left, and for more than 256 bytes, control characters or bytes that are not UTF-8.
std::optional<std::string> displayText(std::string_view text);

/// ASCII letters made lower case; other bytes are kept.
std::string lowered(std::string_view text);

}  // namespace kestro
