#pragma once

#include "core/base/enumeration.h"
#include "ui/menus/menu_entry.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace kestro::test {

/// A menu entry as a line of text: "---" for a separator, "(…)" for a disabled entry, "* " before a checked one,
/// " > " after one that opens a submenu, and its shortcut in brackets.
inline std::string lineOf(const MenuEntry& entry) {
    if (entry.kind == MenuEntry::Kind::separator) {
        return "---";
    }
    std::string line = entry.title.toStdString();
    if (!entry.isEnabled) {
        line = "(" + line + ")";
    }
    if (entry.isChecked) {
        line = "* " + line;
    }
    if (!entry.shortcut.isEmpty()) {
        line += " [" + entry.shortcut.toStdString() + "]";
    }
    if (!entry.submenu.empty()) {
        line += " >";
    }
    return line;
}

inline std::vector<std::string> linesOf(const Menu& menu) {
    std::vector<std::string> lines;
    for (const MenuEntry& entry : menu) {
        lines.push_back(lineOf(entry));
    }
    return lines;
}

/// The entry with this title, including submenus; nullptr if there is none.
inline const MenuEntry* findEntry(const Menu& menu, const QString& title) {
    for (const MenuEntry& entry : menu) {
        if (entry.title == title) {
            return &entry;
        }
        if (const MenuEntry* found = findEntry(entry.submenu, title)) {
            return found;
        }
    }
    return nullptr;
}

/// Picks the entry with this title as a user would. False: there is none, or it cannot be picked.
inline bool pick(const Menu& menu, const QString& title) {
    const MenuEntry* entry = findEntry(menu, title);
    if (entry == nullptr || !entry->isEnabled || !entry->action) {
        return false;
    }
    entry->action();
    return true;
}

/// Picks the entry of every value of an enumeration, in order, and calls `check(value)` after each.
template <typename Value, typename Check>
void pickEach(const Menu& menu, Check check) {
    for (const auto value : allCases<Value>()) {
        EXPECT_TRUE(pick(menu, QString::fromUtf8(rawValue(value)))) << rawValue(value);
        check(value);
    }
}

}  // namespace kestro::test
