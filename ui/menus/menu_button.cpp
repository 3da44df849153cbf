#include "ui/menus/menu_button.h"

#include <QAction>
#include <QCoreApplication>
#include <QCursor>
#include <QHoverEvent>
#include <QKeyEvent>

#include <algorithm>

namespace kestro {

namespace {

constexpr int menuGap = 2;

}  // namespace

MenuButton::MenuButton(ButtonKind kind, MenuBuilder builder, QWidget* parent)
    : Button(kind, parent), builder_(std::move(builder)) {
    setRole(QAccessible::ButtonMenu);
}

void MenuButton::activated() {
    auto* menu = new PopupMenu(builder_(), this);
    menu->setMinimumWidth(width());
    connect(menu, &QMenu::aboutToHide, this, [this] { leaveUnlessUnderPointer(); });
    menu->openAt(mapToGlobal(QPoint(0, height() + menuGap)));
    if (showsFocus()) {
        const QList<QAction*> entries = menu->actions();
        const auto current = std::ranges::find_if(entries, &QAction::isChecked);
        menu->setActiveAction(current != entries.end() ? *current : entries.value(0));
    }
}

void MenuButton::leaveUnlessUnderPointer() {
    const QPointF pointer = mapFromGlobal(QPointF(QCursor::pos()));
    if (!rect().contains(pointer.toPoint())) {
        // The menu had grabbed the pointer, so its leave was not reported.
        QHoverEvent leave(QEvent::HoverLeave, pointer, QPointF(QCursor::pos()), pointer);
        QCoreApplication::sendEvent(this, &leave);
    }
}

void MenuButton::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Down) {
        showFocus();
        click();
        return;
    }
    Button::keyPressEvent(event);
}

}  // namespace kestro
