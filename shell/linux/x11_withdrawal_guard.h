#pragma once

#include <QElapsedTimer>
#include <QTimer>

class QWidget;

namespace kestro {

class WindowSystem;

/// Restores a window that the window manager withdraws although it is shown.
///
/// A window that is shown, hidden and shown again in quick succession may be mapped for the first time only when
/// the last request is made, which then finds it mapped and does nothing. The window manager, which has yet to
/// process the hide, withdraws the window for good. Nothing but waiting orders these events (Inter-Client
/// Communication Conventions, 4.1.4), so the guard checks a few times after such a show whether the window is
/// still there, and shows it again if not. Windows withdrawn later stay hidden. X11 only; does nothing
/// elsewhere. Main thread; part of its window.
class WithdrawalGuard {
public:
    /// Both outlive the guard.
    WithdrawalGuard(QWidget& window, WindowSystem& system);

    void windowDidShow();

    /// Stops restoring the window, even one that has just been hidden.
    void windowWillHide();

private:
    void look();

    QWidget& window_;
    WindowSystem& system_;
    QElapsedTimer sinceHidden_;  // invalid before the first hide
    QTimer nextLook_;
    bool isRestoring_ = false;
};

}  // namespace kestro
