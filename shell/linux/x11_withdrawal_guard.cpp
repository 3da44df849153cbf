#include "app/windows/withdrawal_guard.h"

#include "shell/window_system.h"

#include <QWidget>

#include <chrono>

namespace kestro {

namespace {

using namespace std::chrono_literals;

// A window manager that lags by more than this has other problems.
constexpr auto quickChange = 1s;
constexpr auto firstLook = 250ms;
constexpr auto lastLook = 4s;

}  // namespace

WithdrawalGuard::WithdrawalGuard(QWidget& window, WindowSystem& system) : window_(window), system_(system) {
    nextLook_.setSingleShot(true);
    QObject::connect(&nextLook_, &QTimer::timeout, &nextLook_, [this] { look(); });
}

void WithdrawalGuard::windowWillHide() {
    if (!isRestoring_) {
        nextLook_.stop();
        sinceHidden_.start();
    }
}

void WithdrawalGuard::windowDidShow() {
    if (!isRestoring_ && sinceHidden_.isValid() && !sinceHidden_.hasExpired(quickChange / 1ms)) {
        nextLook_.start(firstLook);
    }
}

void WithdrawalGuard::look() {
    if (!window_.isVisible()) {
        return;
    }
    if (!window_.isMinimized() && system_.isWithdrawn(window_)) {
        isRestoring_ = true;
        window_.hide();
        system_.makeKeyAndOrderFront(window_);
        isRestoring_ = false;
    }
    if (const auto next = nextLook_.intervalAsDuration() * 2; next <= lastLook) {
        nextLook_.start(next);
    }
}

}  // namespace kestro
