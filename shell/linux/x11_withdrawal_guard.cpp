#include "shell/linux/x11_withdrawal_guard.h"

#include "shell/linux/x11_display.h"

#include <QElapsedTimer>
#include <QEvent>
#include <QTimer>
#include <QWidget>

#include <chrono>
#include <cstdint>

namespace kestro {

namespace {

using namespace std::chrono_literals;

// A window manager that lags by more than this has other problems.
constexpr auto quickChange = 1s;
constexpr auto firstLook = 250ms;
constexpr auto lastLook = 4s;

/// Whether the X server has the window unmapped and no window manager has a WM_STATE for it: a window that was
/// shown is neither on the screen nor kept minimised or on another desktop.
bool isWithdrawn(const QWidget& window) {
    xcb_connection_t* const connection = x11_display::connection();
    if (connection == nullptr) {
        return false;
    }
    const auto id = static_cast<xcb_window_t>(window.internalWinId());
    const xcb_atom_t state = x11_display::atom(connection, "WM_STATE");
    const auto attributesCookie = xcb_get_window_attributes(connection, id);
    const auto stateCookie = xcb_get_property(connection, 0, id, state, state, 0, 1);
    const x11_display::Reply<xcb_get_window_attributes_reply_t> attributes(
        xcb_get_window_attributes_reply(connection, attributesCookie, nullptr));
    const x11_display::Reply<xcb_get_property_reply_t> property(
        xcb_get_property_reply(connection, stateCookie, nullptr));
    if (!attributes || attributes->map_state != XCB_MAP_STATE_UNMAPPED || !property) {
        return false;
    }
    // A window manager removes the state of a window that it withdraws, or sets it to 0.
    return xcb_get_property_value_length(property.get()) < static_cast<int>(sizeof(std::uint32_t)) ||
           *static_cast<const std::uint32_t*>(xcb_get_property_value(property.get())) == 0;
}

class X11WithdrawalGuard final : public QObject, public WithdrawalGuard {
public:
    X11WithdrawalGuard(QWidget& window, WindowSystem& system) : window_(window), system_(system) {
        nextLook_.setSingleShot(true);
        connect(&nextLook_, &QTimer::timeout, this, [this] { look(); });
        window.installEventFilter(this);
    }

    void windowWillHide() override {
        if (!isRestoring_) {
            nextLook_.stop();
            sinceHidden_.start();
        }
    }

protected:
    bool eventFilter(QObject*, QEvent* event) override {
        if (!event->spontaneous() && event->type() == QEvent::Show) {
            windowWillShow();
        } else if (!event->spontaneous() && event->type() == QEvent::Hide) {
            windowWillHide();
        }
        return false;
    }

private:
    void windowWillShow() {
        if (!isRestoring_ && sinceHidden_.isValid() && !sinceHidden_.hasExpired(quickChange / 1ms)) {
            nextLook_.start(firstLook);
        }
    }

    void look() {
        if (!window_.isVisible()) {
            return;
        }
        if (!window_.isMinimized() && isWithdrawn(window_)) {
            isRestoring_ = true;
            window_.hide();
            system_.makeKeyAndOrderFront(window_);
            isRestoring_ = false;
        }
        if (const auto next = nextLook_.intervalAsDuration() * 2; next <= lastLook) {
            nextLook_.start(next);
        }
    }

    QWidget& window_;
    WindowSystem& system_;
    QElapsedTimer sinceHidden_;  // invalid before the first hide
    QTimer nextLook_;
    bool isRestoring_ = false;
};

}  // namespace

std::unique_ptr<WithdrawalGuard> guardAgainstX11Withdrawal(QWidget& window, WindowSystem& system) {
    if (x11_display::connection() == nullptr) {
        return nullptr;
    }
    return std::make_unique<X11WithdrawalGuard>(window, system);
}

}  // namespace kestro
