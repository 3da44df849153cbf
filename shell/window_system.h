#pragma once

#include <QRect>

#include <functional>
#include <memory>

class QScreen;
class QWidget;

namespace kestro {

/// Watches for presses as long as it lives. Main thread; owned by the caller, whose callback may destroy it.
class PressMonitor {
public:
    virtual ~PressMonitor() = default;
};

/// Keeps a window on the screen that was shown, as long as it lives. Main thread; its window outlives it.
class WithdrawalGuard {
public:
    virtual ~WithdrawalGuard() = default;

    /// Stops restoring the window, for one that fades out before it is hidden. Hiding it does the same.
    virtual void windowWillHide() = 0;
};

/// Window placement and stacking beyond the toolkit's API. Main thread; outlives the windows.
class WindowSystem {
public:
    virtual ~WindowSystem() = default;

    /// Raises a window above the others and gives it the keyboard focus, whatever the user is working in, as far
    /// as the window system lets it.
    virtual void makeKeyAndOrderFront(QWidget& window) = 0;

    /// Keeps a window that is about to be shown out of task bars and pagers. Does nothing where there are none.
    virtual void keepOutOfTaskBars(QWidget& window) = 0;

    /// Keeps a window above the normal ones, or stops doing so, without recreating it. Where there are no levels
    /// the window keeps its own.
    virtual void setFloatingLevel(QWidget& window, bool isFloating) = 0;

    /// Shows a window again that the window manager takes away although it was shown. Null where windows cannot be
    /// taken away.
    [[nodiscard]] virtual std::unique_ptr<WithdrawalGuard> guardAgainstWithdrawal(QWidget& window) = 0;

    /// Whether the application may place and fade its windows.
    virtual bool canPlaceWindows() const = 0;

    /// Whether the system resizes windows at their edges itself, so that their content needs no band for it.
    virtual bool resizesAtEdges() const { return false; }

    /// The area of a screen for windows, clear of panels and of the status bar's own window; in points and global
    /// coordinates.
    virtual QRect availableArea(const QScreen& screen) const = 0;

    /// The same area, of which the status bar's own window may cover a part.
    virtual QRect areaClearOfPanels(const QScreen& screen) const = 0;

    /// Calls `onChange` after panels may have changed what they leave free of a screen, where the toolkit does not
    /// report it; replaces the previous callback. An empty one ends the calls.
    virtual void onPanelsChanged(std::function<void()> /*onChange*/) {}

    /// Keeps a window above another one that is on the screen, also while that one floats or is full screen; null
    /// ends this. Call it before the window is shown and whenever the other one appears or disappears.
    virtual void keepAbove(QWidget& window, QWidget* other) = 0;

    /// Calls `onPress` for every press of a mouse button on the screen, whichever window receives it: a press on
    /// the desktop or on a panel does not move the keyboard focus and would go unnoticed. Null where the window
    /// system does not report other applications' presses.
    [[nodiscard]] virtual std::unique_ptr<PressMonitor> watchPresses(std::function<void()> onPress) = 0;
};

}  // namespace kestro
