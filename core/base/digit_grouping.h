#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace kestro {

/// How a locale sets the digits of a whole number apart. A plain value; any thread.
struct DigitGrouping {
    /// The text between two groups, in UTF-8; empty: digits are not grouped.
    std::string separator = ",";

    /// Sizes of the groups from the right as `lconv::grouping` has them: the last one repeats, and a size
    /// outside 1..126 leaves the remaining digits together.
    std::string sizes = "\3";

    /// Thousands set apart by commas.
    static DigitGrouping english() { return {}; }

    /// The grouping of the locale called `name` ("" is the user's own, by LC_ALL, LC_NUMERIC and LANG, whatever
    /// the locale of the process is). A locale that is not installed, and the "C" locale, which groups nothing,
    /// give the English one; a separator in another charset than UTF-8 is taken for the no-break space.
    static DigitGrouping ofLocale(const char* name);

    /// The user's grouping, read once.
    static const DigitGrouping& ofUser();

    friend bool operator==(const DigitGrouping&, const DigitGrouping&) = default;
};

/// A whole number in decimal, its digits grouped.
std::string groupedDigits(std::int64_t number, const DigitGrouping& grouping);

}  // namespace kestro
