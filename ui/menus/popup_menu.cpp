#include "ui/menus/popup_menu.h"

#include "ui/menus/menu_style.h"
#include "ui/paint/text_painter.h"
#include "ui/theme/window_compositing.h"
#include "ui/theme/window_shape.h"

#include <QAction>
#include <QApplication>
#include <QScreen>
#include <QTimer>

#include <algorithm>

namespace kestro {

namespace {

constexpr int screenMargin = 8;

/// Escapes a title so that QAction finds no mnemonic or shortcut in it.
QString escaped(const QString& title) {
    QString text = singleLine(title);
    return text.replace(QLatin1Char('&'), QStringLiteral("&&"));
}

/// The position closest to `wanted` where a menu of this width stays clear of the screen's right edge.
QPoint awayFromTheEdge(const QPoint& wanted, int width) {
    const QScreen* screen = QGuiApplication::screenAt(wanted);
    if (screen == nullptr) {
        return wanted;
    }
    const QRect available = screen->availableGeometry();
    const int last = available.x() + available.width() - screenMargin - width;
    return {std::max(available.x(), std::min(wanted.x(), last)), wanted.y()};
}

}  // namespace

PopupMenu::PopupMenu(const Menu& entries, QWidget* parent) : QMenu(parent) {
    setStyle(&MenuStyle::shared());
    setWindowFlag(Qt::FramelessWindowHint);
    setWindowFlag(Qt::NoDropShadowWindowHint);
    setAttribute(Qt::WA_TranslucentBackground);
    const bool hasSymbols =
        std::ranges::any_of(entries, [](const MenuEntry& entry) { return !entry.symbol.isEmpty(); });
    setProperty(MenuStyle::symbolProperty, hasSymbols);
    int width = 0;
    for (const MenuEntry& entry : entries) {
        add(entry);
        width = std::max(width, MenuStyle::rowWidth(singleLine(entry.title), entry.shortcut, hasSymbols));
    }
    setMinimumWidth(width);
}

void PopupMenu::openAt(const QPoint& position) {
    connect(this, &QMenu::aboutToHide, this, &QObject::deleteLater);
    popup(awayFromTheEdge(position, sizeHint().width()));
}

void PopupMenu::showEvent(QShowEvent* event) {
    QMenu::showEvent(event);
    shapeWindow(*this, MenuStyle::cornerRadius, window_compositing::isAvailable());
}

void PopupMenu::resizeEvent(QResizeEvent* event) {
    QMenu::resizeEvent(event);
    shapeWindow(*this, MenuStyle::cornerRadius, window_compositing::isAvailable());
}

void PopupMenu::add(const MenuEntry& entry) {
    if (entry.kind == MenuEntry::Kind::separator) {
        addSeparator();
        return;
    }
    const QString title = escaped(entry.title);
    QAction* action = nullptr;
    if (entry.submenu.empty()) {
        action = addAction(title);
    } else {
        auto* submenu = new PopupMenu(entry.submenu, this);
        submenu->setTitle(title);
        action = addMenu(submenu);
    }
    action->setData(singleLine(entry.title));
    action->setProperty(MenuStyle::shortcutProperty, entry.shortcut);
    action->setProperty(MenuStyle::symbolProperty, entry.symbol);
    action->setProperty(MenuStyle::headerProperty, entry.kind == MenuEntry::Kind::header);
    action->setEnabled(entry.isEnabled && entry.kind == MenuEntry::Kind::action);
    action->setCheckable(entry.isChecked);
    action->setChecked(entry.isChecked);
    if (entry.action) {
        // Runs after the menu has closed: the action may show, hide or destroy the menu's owner.
        connect(action, &QAction::triggered, qApp,
                [chosen = entry.action] { QTimer::singleShot(0, qApp, chosen); });
    }
}

}  // namespace kestro
