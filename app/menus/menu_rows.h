#pragma once

#include "core/base/enumeration.h"
#include "shell/status_bar.h"

#include <QString>

#include <algorithm>
#include <functional>
#include <iterator>
#include <optional>
#include <utility>

namespace kestro {

/// Building blocks that several menus share.

/// An enabled entry.
inline StatusMenuEntry menuCommand(const QString& title, std::function<void()> action,
                                   const QString& shortcut = {}) {
    StatusMenuEntry entry;
    entry.title = title;
    entry.action = std::move(action);
    entry.shortcut = shortcut;
    return entry;
}

inline StatusMenuEntry menuSubmenu(const QString& title, StatusMenu rows) {
    StatusMenuEntry entry;
    entry.title = title;
    entry.submenu = std::move(rows);
    return entry;
}

inline void appendRows(StatusMenu& menu, StatusMenu rows) {
    std::ranges::move(rows, std::back_inserter(menu));
}

/// One entry per case in case order, titled with its label; `checked` gets the check mark. `choose` receives the
/// case that the user picks.
template <ClosedEnumeration E>
StatusMenu choiceRows(std::optional<E> checked, const std::function<void(E)>& choose) {
    StatusMenu rows;
    for (const E value : allCases<E>()) {
        StatusMenuEntry entry =
            menuCommand(QString::fromUtf8(rawValue(value)), [choose, value] { choose(value); });
        entry.isChecked = value == checked;
        rows.push_back(std::move(entry));
    }
    return rows;
}

}  // namespace kestro
