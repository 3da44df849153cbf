#include "platform/linux/valid_text.h"

#include <cstddef>
#include <cstdint>

namespace kestro {

namespace {

/// The length of the well-formed UTF-8 sequence at the start of `bytes`, 0 when there is none (RFC 3629:
/// no overlong forms, no surrogates, nothing above U+10FFFF).
std::size_t sequenceLength(std::string_view bytes) {
    const auto byte = [&](std::size_t index) {
        return index < bytes.size() ? static_cast<std::uint8_t>(bytes[index]) : std::uint8_t{0};
    };
    const auto continues = [&](std::size_t index) { return (byte(index) & 0xC0) == 0x80; };
    const auto first = byte(0);
    const auto second = byte(1);
    if (first < 0x80) {
        return 1;
    }
    if (first >= 0xC2 && first <= 0xDF) {
        return continues(1) ? 2 : 0;
    }
    if (first >= 0xE0 && first <= 0xEF) {
        const bool overlong = first == 0xE0 && second < 0xA0;
        const bool surrogate = first == 0xED && second > 0x9F;
        return continues(1) && continues(2) && !overlong && !surrogate ? 3 : 0;
    }
    if (first >= 0xF0 && first <= 0xF4) {
        const bool overlong = first == 0xF0 && second < 0x90;
        const bool tooLarge = first == 0xF4 && second > 0x8F;
        return continues(1) && continues(2) && continues(3) && !overlong && !tooLarge ? 4 : 0;
    }
    return 0;
}

}  // namespace

std::string validText(std::string_view bytes) {
    std::string text;
    text.reserve(bytes.size());
    while (!bytes.empty()) {
        const auto length = sequenceLength(bytes);
        if (length == 0) {
            text += "\xEF\xBF\xBD";
            bytes.remove_prefix(1);
            continue;
        }
        const auto first = static_cast<std::uint8_t>(bytes.front());
        // U+0080 to U+009F are control characters too.
        const bool control =
            first < 0x20 || first == 0x7F || (first == 0xC2 && static_cast<std::uint8_t>(bytes[1]) < 0xA0);
        if (control) {
            text += '?';
        } else {
            text.append(bytes.substr(0, length));
        }
        bytes.remove_prefix(length);
    }
    return text;
}

}  // namespace kestro
