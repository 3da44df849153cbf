#pragma once

#include <cstdint>
#include <string>

namespace kestro {

/// How a locale groups the digits of a whole number. A plain value; any thread.
struct DigitGrouping {
    /// The separator between two groups, in UTF-8; empty: digits are not grouped.
    std::string separator = ",";

    /// Group sizes from the right, encoded as in `lconv::grouping`: the last one repeats, and a size outside
    /// 1..126 ends the grouping.
    std::string sizes = "\3";

    /// Groups of three, separated by commas.
    static DigitGrouping english() { return {}; }

    /// The grouping of the locale called `name`. "" is the user's own, from LC_ALL, LC_NUMERIC and LANG,
    /// regardless of the process's locale. Falls back to English for a locale that is not installed and for "C",
    /// which has no grouping. A separator that is not UTF-8 becomes the no-break space.
    static DigitGrouping ofLocale(const char* name);

    /// The user's grouping, cached after the first call.
    static const DigitGrouping& ofUser();

    friend bool operator==(const DigitGrouping&, const DigitGrouping&) = default;
};

/// A whole number in decimal with grouped digits.
std::string groupedDigits(std::int64_t number, const DigitGrouping& grouping);

}  // namespace kestro
