#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>

namespace kestro {

/// The table of a closed enumeration. A specialisation defines `static constexpr std::array rows`, one row per
/// case in case order, each with at least the members `value` (the case) and `rawValue` (its stored form). Cases
/// are numbered from 0 without gaps.
template <typename E>
struct EnumerationTable;

/// A row without further columns.
template <typename E>
struct LabelRow {
    E value;
    std::string_view rawValue;
};

template <typename E>
concept ClosedEnumeration = requires {
    EnumerationTable<E>::rows[0].value;
    EnumerationTable<E>::rows[0].rawValue;
};

/// True when the rows are in case order.
template <ClosedEnumeration E>
constexpr bool tableIsInCaseOrder() {
    std::size_t index = 0;
    for (const auto& row : EnumerationTable<E>::rows) {
        if (static_cast<std::size_t>(row.value) != index++) {
            return false;
        }
    }
    return true;
}

/// The table row of a case.
template <ClosedEnumeration E>
constexpr const auto& tableRow(E value) {
    static_assert(tableIsInCaseOrder<E>());
    return EnumerationTable<E>::rows[static_cast<std::size_t>(value)];
}

/// Every case, in the order in which menus and pickers list them.
template <ClosedEnumeration E>
constexpr auto allCases() {
    static_assert(tableIsInCaseOrder<E>());
    constexpr auto& rows = EnumerationTable<E>::rows;
    std::array<E, rows.size()> cases{};
    for (std::size_t i = 0; i < rows.size(); ++i) {
        cases[i] = rows[i].value;
    }
    return cases;
}

/// The stored form of a case; for most enumerations also its display label.
template <ClosedEnumeration E>
constexpr std::string_view rawValue(E value) {
    return tableRow(value).rawValue;
}

/// The explanation of a case, where the table has one.
template <ClosedEnumeration E>
constexpr std::string_view description(E value) {
    return tableRow(value).description;
}

/// The name of a case's symbol, where the table has one.
template <ClosedEnumeration E>
constexpr std::string_view iconName(E value) {
    return tableRow(value).iconName;
}

/// The identity of a case in lists: its stored form.
template <ClosedEnumeration E>
constexpr std::string_view id(E value) {
    return rawValue(value);
}

/// The case whose stored form is exactly `text`; nullopt when there is none.
template <ClosedEnumeration E>
constexpr std::optional<E> fromRawValue(std::string_view text) {
    for (const auto& row : EnumerationTable<E>::rows) {
        if (row.rawValue == text) {
            return row.value;
        }
    }
    return std::nullopt;
}

}  // namespace kestro
