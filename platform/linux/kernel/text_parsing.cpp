#include "platform/linux/kernel/text_parsing.h"

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

}  // namespace

std::string_view trimmedField(std::string_view text) {
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
    text = trimmedField(text);
    double value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc{} || end != text.data() + text.size() || !std::isfinite(value)) {
        return std::nullopt;
    }
    return value;
}

std::optional<std::string> displayText(std::string_view text) {
    text = trimmedField(text);
    text = trimmedField(text.substr(0, std::min(text.find('\n'), text.find('\0'))));
    if (text.empty() || text.size() > displayTextLimit || !isValidUtf8(text)) {
        return std::nullopt;
    }
    std::string result;
    result.reserve(text.size());
    for (; !text.empty(); text.remove_prefix(utf8SequenceLength(text))) {
        if (isBlank(text.front())) {
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
