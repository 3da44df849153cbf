#pragma once

#include "shell/window_system.h"

namespace kestro {

/// Restores a window that the window manager withdraws although it is shown; null on other window systems.
///
/// A window that is shown, hidden and shown again in quick succession may be mapped for the first time only when
/// the last request is made, which then finds it mapped and does nothing. The window manager, which has yet to
/// process the hide, withdraws the window for good. Nothing but waiting orders these events (Inter-Client
/// Communication Conventions, 4.1.4), so the guard checks a few times after such a show whether the window is
/// still there, and shows it again if not. Windows withdrawn later stay hidden. Main thread; `window` and `system`
/// outlive the guard.
[[nodiscard]] std::unique_ptr<WithdrawalGuard> guardAgainstX11Withdrawal(QWidget& window, WindowSystem& system);

}  // namespace kestro
