#include "ui/menus/menu_button.h"

#include <QKeyEvent>

namespace kestro {

namespace {

constexpr int menuGap = 2;

}  // namespace

MenuButton::MenuButton(ButtonKind kind, MenuBuilder builder, QWidget* parent)
    : Button(kind, parent), builder_(std::move(builder)) {}

AccessibleInfo MenuButton::accessibleInfo() const {
    AccessibleInfo info = Button::accessibleInfo();
    info.role = QAccessible::ButtonMenu;
    return info;
}

void MenuButton::activated() {
    auto* menu = new PopupMenu(builder_(), this);
    menu->setMinimumWidth(width());
    menu->openAt(mapToGlobal(QPoint(0, height() + menuGap)));
    if (showsFocus()) {
        menu->setActiveAction(menu->actions().value(0));
    }
}

void MenuButton::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Down) {
        click();
        return;
    }
    Button::keyPressEvent(event);
}

}  // namespace kestro
