#pragma once

#include "shell/status_bar.h"

#include <QMenu>
#include <QPointer>

namespace kestro {

/// A status item's menu in a window of our own. At most one is open; opening another or destroying this object
/// closes it. A chosen entry runs from the event loop, after the menu has closed. Main thread.
class StatusMenuPopup {
public:
    ~StatusMenuPopup();

    /// Opens with the top-left corner at `position` in global coordinates, kept on the screen. Does nothing for
    /// an empty menu.
    void open(const Menu& menu, QPoint position);

    /// The open menu, or null.
    QMenu* menu() const { return menu_; }

private:
    QPointer<QMenu> menu_;
};

}  // namespace kestro
