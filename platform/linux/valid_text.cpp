#include "platform/linux/valid_text.h"

#include <cstdint>

#include "core/base/text.h"

namespace kestro {

std::string validText(std::string_view bytes) {
    std::string text;
    text.reserve(bytes.size());
    while (!bytes.empty()) {
        const auto length = utf8SequenceLength(bytes);
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
