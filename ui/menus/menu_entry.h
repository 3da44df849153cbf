#pragma once

#include <QString>

#include <functional>
#include <utility>
#include <vector>

namespace kestro {

struct MenuEntry;
using Menu = std::vector<MenuEntry>;

/// One entry of a menu. Titles are plain text: "&" and "_" show as themselves. Main thread.
struct MenuEntry {
    enum class Kind { action, separator, header };

    Kind kind = Kind::action;
    QString title;
    QString symbol;    ///< name in the symbol set; empty: none
    QString shortcut;  ///< portable key sequence such as "Ctrl+D"; empty: none
    bool isEnabled = true;
    bool isChecked = false;
    std::function<void()> action;    ///< runs after the menu has closed; empty: does nothing
    std::vector<MenuEntry> submenu;  ///< not empty: the entry opens a submenu

    static MenuEntry separator() {
        MenuEntry entry;
        entry.kind = Kind::separator;
        return entry;
    }
    static MenuEntry header(const QString& title) {
        MenuEntry entry;
        entry.kind = Kind::header;
        entry.title = title;
        entry.isEnabled = false;
        return entry;
    }
    static MenuEntry command(const QString& title, std::function<void()> action, const QString& shortcut = {}) {
        MenuEntry entry;
        entry.title = title;
        entry.action = std::move(action);
        entry.shortcut = shortcut;
        return entry;
    }
    static MenuEntry opening(const QString& title, Menu submenu) {
        MenuEntry entry;
        entry.title = title;
        entry.submenu = std::move(submenu);
        return entry;
    }
};

}  // namespace kestro
