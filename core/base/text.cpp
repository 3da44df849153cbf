#include "core/base/text.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace kestro {

namespace {

using namespace std::string_view_literals;

constexpr auto whiteSpace = " \t\n\v\f\r\0"sv;
constexpr std::size_t displayTextLimit = 256;

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
    const auto first = text.find_first_not_of(whiteSpace);
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(whiteSpace) - first + 1);
}

std::string_view takeLine(std::string_view& rest) {
    const auto end = rest.find('\n');
    const auto line = rest.substr(0, end);
    rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
    return line;
}

std::string_view takeField(std::string_view& rest) {
    rest.remove_prefix(std::min(rest.find_first_not_of(whiteSpace), rest.size()));
    const auto field = rest.substr(0, rest.find_first_of(whiteSpace));
    rest.remove_prefix(field.size());
    return field;
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
    while (!bytes.empty()) {
        const auto length = utf8SequenceLength(bytes);
        if (length == 0) {
            return false;
        }
        bytes.remove_prefix(length);
    }
    return true;
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
    for (char& character : result) {
        if (character >= 'A' && character <= 'Z') {
            character = static_cast<char>(character - 'A' + 'a');
        }
    }
    return result;
}

}  // namespace kestro
