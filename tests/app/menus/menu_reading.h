#pragma once

#include "core/base/enumeration.h"
#include "shell/status_bar.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace kestro::test {

/// A menu entry as a line of text: "---" for a separator, "(…)" for a disabled entry, "* " before a checked one,
/// " > " after one that opens a submenu, and its shortcut in brackets.
inline std::string lineOf(const StatusMenuEntry& entry) {
    if (entry.isSeparator) {
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

inline std::vector<std::string> linesOf(const StatusMenu& menu) {
    std::vector<std::string> lines;
    for (const StatusMenuEntry& entry : menu) {
        lines.push_back(lineOf(entry));
    }
    return lines;
}

/// The entry with this title, including submenus; nullptr if there is none.
inline const StatusMenuEntry* findEntry(const StatusMenu& menu, const QString& title) {
    for (const StatusMenuEntry& entry : menu) {
        if (entry.title == title) {
            return &entry;
        }
        if (const StatusMenuEntry* found = findEntry(entry.submenu, title)) {
            return found;
        }
    }
    return nullptr;
}

/// Picks the entry with this title as a user would. False: there is none, or it cannot be picked.
inline bool pick(const StatusMenu& menu, const QString& title) {
    const StatusMenuEntry* entry = findEntry(menu, title);
    if (entry == nullptr || !entry->isEnabled || !entry->action) {
        return false;
    }
    entry->action();
    return true;
}

/// Picks the entry of every value of an enumeration, in order; `expectChoice(value)` is called before each pick.
template <typename Value, typename ExpectChoice>
void pickEach(const StatusMenu& menu, ExpectChoice expectChoice) {
    for (const auto value : allCases<Value>()) {
        expectChoice(value);
        EXPECT_TRUE(pick(menu, QString::fromUtf8(rawValue(value)))) << rawValue(value);
    }
}

}  // namespace kestro::test
