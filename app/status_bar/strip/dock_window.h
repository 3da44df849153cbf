#pragma once

class QWidget;

namespace kestro {

/// Tells an X11 window manager that a window is a dock on every workspace, by the properties
/// _NET_WM_WINDOW_TYPE and _NET_WM_DESKTOP (Extended Window Manager Hints 1.5). Creates the window; to be called
/// before it is shown for the first time. Does nothing on other window systems.
void makeDock(QWidget& window);

}  // namespace kestro
