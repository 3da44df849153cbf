#pragma once

#include "ui/menus/menu_entry.h"

#include <QMenu>

namespace kestro {

/// A glass menu in the program's own style. Keyboard handling, submenus, screen edges and accessibility come from
/// QMenu. Main thread.
class PopupMenu : public QMenu {
    Q_OBJECT

public:
    explicit PopupMenu(const Menu& entries, QWidget* parent = nullptr);

    /// Opens with its top left corner at `position` (global) and deletes itself once closed. A chosen entry's
    /// action runs after that.
    void openAt(const QPoint& position);

protected:
    void showEvent(QShowEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void add(const MenuEntry& entry);
};

}  // namespace kestro
