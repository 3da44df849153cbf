#include "shell/linux/status_menu_popup.h"

#include "ui/menus/popup_menu.h"

namespace kestro {

namespace {

std::vector<MenuEntry> menuEntries(const StatusMenu& menu) {
    std::vector<MenuEntry> entries;
    for (const StatusMenuEntry& source : menu) {
        if (source.isSeparator) {
            entries.push_back(MenuEntry::separator());
            continue;
        }
        // An entry that can neither be chosen nor opened is a header.
        if (!source.isEnabled && source.submenu.empty()) {
            entries.push_back(MenuEntry::header(source.title));
            continue;
        }
        MenuEntry entry;
        entry.title = source.title;
        entry.shortcut = source.shortcut;
        entry.isEnabled = source.isEnabled;
        entry.isChecked = source.isChecked;
        entry.action = source.action;
        entry.submenu = menuEntries(source.submenu);
        entries.push_back(std::move(entry));
    }
    return entries;
}

}  // namespace

StatusMenuPopup::~StatusMenuPopup() {
    delete menu_;
}

void StatusMenuPopup::open(const StatusMenu& menu, QPoint position) {
    delete menu_;
    if (menu.empty()) {
        return;
    }
    auto* popup = new PopupMenu(menuEntries(menu));
    menu_ = popup;
    popup->openAt(position);
}

}  // namespace kestro
