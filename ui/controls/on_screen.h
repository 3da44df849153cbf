#pragma once

#include <QWidget>

namespace kestro {

/// Whether the user can see a widget: it is shown and its window is not minimised.
inline bool isOnScreen(const QWidget& widget) {
    return widget.isVisible() && !widget.window()->isMinimized();
}

}  // namespace kestro
