#include "shell/linux/status_menu_popup.h"

#include "ui/menus/popup_menu.h"

namespace kestro {

StatusMenuPopup::~StatusMenuPopup() {
    delete menu_;
}

void StatusMenuPopup::open(const Menu& menu, QPoint position) {
    delete menu_;
    if (menu.empty()) {
        return;
    }
    auto* popup = new PopupMenu(menu);
    menu_ = popup;
    popup->openAt(position);
}

}  // namespace kestro
