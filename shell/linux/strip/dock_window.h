#pragma once

class QWidget;

namespace kestro {

/// Marks a window as a dock on every workspace for an X11 window manager, with the properties
/// _NET_WM_WINDOW_TYPE and _NET_WM_DESKTOP (Extended Window Manager Hints 1.5). Creates the window; call it
/// before the window is first shown. Does nothing on other window systems.
void makeDock(QWidget& window);

}  // namespace kestro
