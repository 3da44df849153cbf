#pragma once

#include <QElapsedTimer>
#include <QTimer>

class QWidget;

namespace kestro {

/// Brings back a window that the window manager withdraws although it is shown.
///
/// A window that is shown, hidden and shown again at once may be mapped for the first time only when the last
/// request is made, which then finds it mapped and asks for nothing; the window manager, which still has the
/// hiding to hear of, withdraws the window for good. Nothing orders these events but waiting (Inter-Client
/// Communication Conventions, 4.1.4), so this looks a few times after such a show whether the window stands, and
/// shows it anew where it does not. Windows that somebody takes off the screen later stay away. X11 only;
/// elsewhere it does nothing. Main thread; a part of its window.
class WithdrawalGuard {
public:
    explicit WithdrawalGuard(QWidget& window);

    void windowDidShow();

    /// From now on nothing brings the window back. Also when it has just been hidden.
    void windowWillHide();

private:
    void look();

    QWidget& window_;
    QElapsedTimer sinceHidden_;  // not valid before the first hiding
    QTimer nextLook_;
    bool isShowingAnew_ = false;
};

}  // namespace kestro
