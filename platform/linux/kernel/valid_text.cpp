#include "platform/linux/kernel/valid_text.h"

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
        if (beginsWithControl(bytes)) {
            text += '?';
        } else {
            text.append(bytes.substr(0, length));
        }
        bytes.remove_prefix(length);
    }
    return text;
}

}  // namespace kestro
