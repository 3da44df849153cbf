#include "platform/linux/text_parsing.h"

#include <algorithm>
#include <cmath>

namespace kestro {
namespace {

constexpr std::size_t displayTextLimit = 256;

bool isBlank(char character) {
    return character == ' ' || character == '\t';
}

bool isTrimmable(char character) {
    return isBlank(character) || character == '\n' || character == '\r' || character == '\v' ||
           character == '\f' || character == '\0';
}

bool isControl(char character) {
    const auto byte = static_cast<unsigned char>(character);
    return byte < 0x20 || byte == 0x7F;
}

/// Length of the sequence that `lead` begins and the smallest code point that needs it; 0 for no lead byte.
struct SequenceShape {
    std::size_t length = 0;
    std::uint32_t smallest = 0;
    std::uint32_t leadBits = 0;
};

SequenceShape sequenceShape(unsigned char lead) {
    if (lead < 0x80) {
        return {1, 0, lead};
    }
    if ((lead & 0xE0) == 0xC0) {
        return {2, 0x80, lead & 0x1FU};
    }
    if ((lead & 0xF0) == 0xE0) {
        return {3, 0x800, lead & 0x0FU};
    }
    if ((lead & 0xF8) == 0xF0) {
        return {4, 0x10000, lead & 0x07U};
    }
    return {};
}

}  // namespace

std::string_view trimmed(std::string_view text) {
    while (!text.empty() && isTrimmable(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && isTrimmable(text.back())) {
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
    while (!rest.empty() && isBlank(rest.front())) {
        rest.remove_prefix(1);
    }
    std::size_t length = 0;
    while (length < rest.size() && !isBlank(rest[length])) {
        ++length;
    }
    const auto field = rest.substr(0, length);
    rest.remove_prefix(length);
    return field;
}

std::optional<double> parseDecimal(std::string_view text) {
    text = trimmed(text);
    double value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc{} || end != text.data() + text.size() || !std::isfinite(value)) {
        return std::nullopt;
    }
    return value;
}

std::optional<std::string> displayText(std::string_view text) {
    text = trimmed(text);
    text = trimmed(text.substr(0, std::min(text.find('\n'), text.find('\0'))));
    if (text.empty() || text.size() > displayTextLimit || !isValidUtf8(text)) {
        return std::nullopt;
    }
    std::string result;
    result.reserve(text.size());
    for (const char character : text) {
        if (isBlank(character)) {
            if (result.back() != ' ') {
                result += ' ';
            }
        } else if (isControl(character)) {
            return std::nullopt;
        } else {
            result += character;
        }
    }
    return result;
}

bool isValidUtf8(std::string_view text) {
    for (std::size_t position = 0; position < text.size();) {
        const auto shape = sequenceShape(static_cast<unsigned char>(text[position]));
        if (shape.length == 0 || shape.length > text.size() - position) {
            return false;
        }
        std::uint32_t codePoint = shape.leadBits;
        for (std::size_t offset = 1; offset < shape.length; ++offset) {
            const auto byte = static_cast<unsigned char>(text[position + offset]);
            if ((byte & 0xC0) != 0x80) {
                return false;
            }
            codePoint = codePoint << 6 | (byte & 0x3FU);
        }
        const bool isSurrogate = codePoint >= 0xD800 && codePoint <= 0xDFFF;
        if (codePoint < shape.smallest || codePoint > 0x10FFFF || isSurrogate) {
            return false;
        }
        position += shape.length;
    }
    return true;
}

std::string lowered(std::string_view text) {
    std::string result(text);
    for (char& character : result) {
        if (character >= 'A' && character <= 'Z') {
            character = static_cast<char>(character - 'A' + 'a');
        }
    }
    return result;
}

}  // namespace kestro
