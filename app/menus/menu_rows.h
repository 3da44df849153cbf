#pragma once

#include "core/base/enumeration.h"
#include "ui/menus/menu_entry.h"

#include <QString>

#include <algorithm>
#include <functional>
#include <iterator>
#include <optional>

namespace kestro {

/// Building blocks that several menus share.

inline void appendRows(Menu& menu, Menu rows) {
    std::ranges::move(rows, std::back_inserter(menu));
}

/// One entry per case in case order, titled with its label; `checked` gets the check mark. `choose` receives the
/// case that the user picks.
template <ClosedEnumeration E>
Menu choiceRows(std::optional<E> checked, const std::function<void(E)>& choose) {
    Menu rows;
    for (const E value : allCases<E>()) {
        rows.push_back(MenuEntry::command(QString::fromUtf8(rawValue(value)), [choose, value] { choose(value); }));
        rows.back().isChecked = value == checked;
    }
    return rows;
}

}  // namespace kestro
