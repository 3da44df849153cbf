#include "platform/linux/kernel/valid_text.h"

#include "core/base/text.h"

#include <algorithm>

namespace kestro {

namespace {

/// The longest beginning of `bytes` without control characters or bytes beyond ASCII: almost always all of it.
std::string_view plainStart(std::string_view bytes) {
    const auto isPlain = [](char byte) { return byte >= ' ' && byte <= '~'; };
    return {bytes.begin(), std::ranges::find_if_not(bytes, isPlain)};
}

}  // namespace

std::string validText(std::string_view bytes) {
    std::string text;
    text.reserve(bytes.size());
    for (;;) {
        const auto plain = plainStart(bytes);
        text += plain;
        bytes.remove_prefix(plain.size());
        if (bytes.empty()) {
            return text;
        }
        const auto length = utf8SequenceLength(bytes);
        if (length == 0) {
            text += "\xEF\xBF\xBD";
            bytes.remove_prefix(1);
            continue;
        }
        if (beginsWithControl(bytes)) {
            text += '?';
        } else {
            text.append(bytes.substr(0, length));
        }
        bytes.remove_prefix(length);
    }
}

}  // namespace kestro
