#include "platform/desktop/overflowing_numbers.h"

#include "core/base/json_text.h"

#include <algorithm>
#include <utility>

namespace kestro {

namespace {

constexpr std::string_view numberCharacters = "+-.0123456789Ee";

/// Shorter numbers cannot overflow if their exponent has at most two digits.
constexpr std::size_t mostCharacters = 200;
constexpr std::size_t mostExponentDigits = 2;

bool mayOverflow(std::string_view number) {
    const auto exponent = std::min(number.find_first_of("Ee"), number.size());
    const auto digits = number.find_first_of("0123456789", exponent);
    return number.size() > mostCharacters || number.size() - std::min(digits, number.size()) > mostExponentDigits;
}

/// Removes leading digits. False: there are none.
bool skipDigits(std::string_view& rest) {
    const std::size_t digits = std::min(rest.find_first_not_of("0123456789"), rest.size());
    rest.remove_prefix(digits);
    return digits > 0;
}

/// Whether all of `text` is a number. The parser rejects one that overflows before it reads what follows.
bool isNumber(std::string_view text) {
    text.remove_prefix(text.starts_with('-') ? 1 : 0);
    const bool startsWithZero = text.starts_with('0');
    text.remove_prefix(startsWithZero ? 1 : 0);
    bool isValid = startsWithZero || skipDigits(text);
    if (text.starts_with('.')) {
        text.remove_prefix(1);
        isValid = skipDigits(text) && isValid;
    }
    if (text.starts_with('e') || text.starts_with('E')) {
        text.remove_prefix(1);
        text.remove_prefix(text.starts_with('+') || text.starts_with('-') ? 1 : 0);
        isValid = skipDigits(text) && isValid;
    }
    return isValid && text.empty();
}

bool overflows(std::string_view number) {
    try {
        return isNumber(number) && !PreferenceJson::parse(number).is_number();
    } catch (const PreferenceJson::out_of_range&) {
        return true;
    } catch (const PreferenceJson::parse_error&) {
        return false;
    }
}

/// A text that starts with this mark cannot be confused with any other in `text`.
std::string markAbsentFrom(std::string_view text) {
    std::string mark = "number:";
    while (text.find(mark) != std::string_view::npos) {
        mark += ':';
    }
    return mark;
}

/// A text in which each overflowing number is a marked string; empty if there is none.
struct MarkedText {
    std::string text;
    int marks = 0;
};

/// The index after the string that starts at `start` with its quotation mark.
std::size_t endOfString(std::string_view text, std::size_t start) {
    std::size_t end = start + 1;
    while (end < text.size() && text[end] != '"') {
        end += text[end] == '\\' ? 2 : 1;
    }
    return std::min(end + 1, text.size());
}

MarkedText withMarkedNumbers(std::string_view text, const std::string& mark) {
    MarkedText marked;
    int tested = 0;
    std::size_t copied = 0;
    for (std::size_t i = 0; i < text.size();) {
        if (text[i] == '"') {
            i = endOfString(text, i);
            continue;
        }
        if (text[i] != '-' && (text[i] < '0' || text[i] > '9')) {
            ++i;
            continue;
        }
        const auto number = text.substr(i, text.find_first_not_of(numberCharacters, i) - i);
        if (mayOverflow(number) && ++tested <= maximumPreferenceElements && overflows(number)) {
            marked.text += text.substr(copied, i - copied);
            marked.text += '"' + mark + std::string(number) + '"';
            copied = i + number.size();
            ++marked.marks;
        }
        i += number.size();
    }
    if (marked.marks > 0) {
        marked.text += text.substr(copied);
    }
    return marked;
}

/// Calls `visit` for every value in the document that is neither an object nor an array.
template <typename Json, typename Visit>
void forEachLeaf(Json& value, const Visit& visit) {
    if (!value.is_structured()) {
        visit(value);
        return;
    }
    for (auto& element : value) {
        forEachLeaf(element, visit);
    }
}

}  // namespace

std::optional<PreferenceJson> parseOverflowingNumbers(std::string_view text) {
    const std::string mark = markAbsentFrom(text);
    const MarkedText marked = withMarkedNumbers(text, mark);
    if (marked.marks == 0) {
        return std::nullopt;
    }
    auto document = parsedJson<PreferenceJson>(marked.text);
    if (document.is_discarded()) {
        return std::nullopt;
    }
    int restored = 0;
    forEachLeaf(document, [&](PreferenceJson& leaf) {
        const auto* string = leaf.get_ptr<const std::string*>();
        if (string != nullptr && string->starts_with(mark)) {
            const std::string digits = string->substr(mark.size());
            leaf = PreferenceJson::binary({digits.begin(), digits.end()});
            ++restored;
        }
    });
    // Otherwise a string was written with escapes to look like a marked number.
    return restored == marked.marks ? std::optional(std::move(document)) : std::nullopt;
}

bool holdsOverflowingNumber(const PreferenceJson& document) {
    bool isHeld = false;
    forEachLeaf(document, [&isHeld](const PreferenceJson& leaf) { isHeld = isHeld || leaf.is_binary(); });
    return isHeld;
}

std::string dumpWithOverflowingNumbers(const PreferenceJson& document, int indent) {
    const auto dumped = [indent](const PreferenceJson& json) {
        return json.dump(indent, ' ', false, PreferenceJson::error_handler_t::replace);
    };
    if (!holdsOverflowingNumber(document)) {
        return dumped(document);
    }
    const std::string mark = markAbsentFrom(dumped(document));
    PreferenceJson marked = document;
    forEachLeaf(marked, [&mark](PreferenceJson& leaf) {
        if (leaf.is_binary()) {
            const auto& digits = leaf.get_binary();
            leaf = mark + std::string(digits.begin(), digits.end());
        }
    });
    std::string text = dumped(marked);
    const std::string quotedMark = '"' + mark;
    for (auto at = text.find(quotedMark); at != std::string::npos; at = text.find(quotedMark, at)) {
        text.erase(at, quotedMark.size());
        text.erase(text.find('"', at), 1);
    }
    return text;
}

}  // namespace kestro
