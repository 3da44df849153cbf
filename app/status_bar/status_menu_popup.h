#pragma once

#include <QMenu>
#include <QPointer>
#include <functional>

#include "app/status_bar/status_bar.h"

namespace kestro {

/// The menu of a status item as a window of ours. One is open at most; opening another closes it, and so does
/// the end of this object. A chosen entry acts from the event loop, after the menu has closed. Main thread.
class StatusMenuPopup {
public:
    ~StatusMenuPopup();

    /// Opens with the top left corner at `position` in global coordinates, kept on the screen. An empty menu
    /// opens nothing.
    void open(const StatusMenu& menu, QPoint position);

    /// The open menu, or null.
    QMenu* menu() const { return menu_; }

private:
    QPointer<QMenu> menu_;
};

}  // namespace kestro
