#pragma once

class QWidget;

namespace kestro {

/// What the windows need of the window system beyond Qt's own words. Main thread.

/// Shows a window above the others and gives it the keyboard, whatever the user is working in. On Wayland
/// the compositor decides: it follows the activation token that the panel passed on with the click, if any.
void makeKeyAndOrderFront(QWidget& window);

/// Has a window that is about to be shown left out of task bars and pagers, as _NET_WM_STATE_SKIP_TASKBAR on
/// X11, where the window manager forgets it when the window is hidden. Elsewhere it does nothing.
void keepOutOfTaskBars(QWidget& window);

/// Keeps a window above the normal ones, or no longer, without creating it anew: as _NET_WM_STATE_ABOVE on
/// X11. Wayland has no such state; there the window keeps its place.
void setFloatingLevel(QWidget& window, bool isFloating);

/// Whether nobody shows the window: the X server has it unmapped, and no window manager keeps it, minimised or on
/// another desktop. Never so on Wayland.
bool isWithdrawn(const QWidget& window);

/// Whether the application may place its windows; Wayland leaves that to the compositor.
bool canPlaceWindows();

}  // namespace kestro
