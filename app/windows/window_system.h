#pragma once

class QWidget;

namespace kestro {

/// What the windows need from the window system beyond Qt's API. Main thread.

/// Raises a window above the others and gives it the keyboard focus, whatever the user is working in. On Wayland
/// the compositor decides, based on the activation token that the panel passed with the click, if any.
void makeKeyAndOrderFront(QWidget& window);

/// Keeps a window that is about to be shown out of task bars and pagers, with _NET_WM_STATE_SKIP_TASKBAR on X11,
/// where the window manager forgets it when the window is hidden. Does nothing elsewhere.
void keepOutOfTaskBars(QWidget& window);

/// Keeps a window above the normal ones, or stops doing so, without recreating it: with _NET_WM_STATE_ABOVE on
/// X11. Wayland has no such state; there the window keeps its level.
void setFloatingLevel(QWidget& window, bool isFloating);

/// Whether the window is withdrawn: the X server has it unmapped, and no window manager keeps it minimised or on
/// another desktop. Always false on Wayland.
bool isWithdrawn(const QWidget& window);

/// Whether the application may place its windows; Wayland leaves that to the compositor.
bool canPlaceWindows();

}  // namespace kestro
