#include "core/base/digit_grouping.h"

#include "core/base/text.h"

#include <fmt/format.h>
#include <locale.h>

#include <algorithm>
#include <string_view>

namespace kestro {

namespace {

constexpr std::string_view noBreakSpace = "\u00A0";

}  // namespace

DigitGrouping DigitGrouping::ofLocale(const char* name) {
    const locale_t locale = newlocale(LC_NUMERIC_MASK, name, locale_t{});
    if (locale == locale_t{}) {
        return english();
    }
    // localeconv has no variant that takes a locale, so switch this thread's locale around the call.
    const locale_t previous = uselocale(locale);
    const lconv* conventions = localeconv();
    DigitGrouping found{conventions->thousands_sep, conventions->grouping};
    const bool isPlainC = found.separator.empty() && std::string_view(conventions->decimal_point) == ".";
    uselocale(previous);
    freelocale(locale);

    if (isPlainC) {
        return english();
    }
    if (!isValidUtf8(found.separator)) {
        // Legacy encodings have only one single-byte separator beyond ASCII: the no-break space.
        found.separator = noBreakSpace;
    }
    return found;
}

const DigitGrouping& DigitGrouping::ofUser() {
    static const DigitGrouping grouping = ofLocale("");
    return grouping;
}

std::string groupedDigits(std::int64_t number, const DigitGrouping& grouping) {
    const std::string plain = fmt::format("{}", number);
    const std::size_t firstDigit = number < 0 ? 1 : 0;
    std::string grouped = plain;
    std::size_t position = plain.size();
    std::size_t sizeIndex = 0;
    while (!grouping.separator.empty() && sizeIndex < grouping.sizes.size()) {
        const int size = static_cast<unsigned char>(grouping.sizes[sizeIndex]);
        if (size < 1 || size > 126 || position <= firstDigit + static_cast<std::size_t>(size)) {
            break;
        }
        position -= static_cast<std::size_t>(size);
        grouped.insert(position, grouping.separator);
        sizeIndex = std::min(sizeIndex + 1, grouping.sizes.size() - 1);
    }
    return grouped;
}

}  // namespace kestro
