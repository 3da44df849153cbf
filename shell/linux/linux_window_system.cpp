#include "shell/linux/linux_window_system.h"

#include "shell/linux/strip/strip_layout.h"
#include "shell/linux/x11_display.h"
#include "shell/linux/x11_press_monitor.h"
#include "shell/linux/x11_withdrawal_guard.h"
#include "shell/status_bar.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWidget>
#include <QWindow>

#include <array>
#include <cstdint>
#include <utility>

namespace kestro {

namespace {

/// Asks the window manager to activate a window, with the source indication of a pager. A click in a panel
/// reaches this process over the bus, without the timestamp of an X event, and a request with the source of a
/// plain application would count as stealing the focus (Extended Window Manager Hints 1.5).
void requestActivationAsPager(xcb_connection_t* connection, xcb_window_t window) {
    constexpr std::uint32_t sourcePager = 2;
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = window;
    event.type = x11_display::atom(connection, "_NET_ACTIVE_WINDOW");
    event.data.data32[0] = sourcePager;
    event.data.data32[1] = XCB_CURRENT_TIME;
    xcb_send_event(connection, 0, x11_display::root(connection),
                   XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                   reinterpret_cast<const char*>(&event));
    xcb_flush(connection);
}

/// Writes or removes WM_TRANSIENT_FOR. The toolkit sets it for dialogs only, and removes it when it shows a window
/// of another type.
void writeTransientParent(xcb_connection_t* connection, const QWindow& window) {
    const auto id = static_cast<xcb_window_t>(window.winId());
    if (const QWindow* const parent = window.transientParent()) {
        const auto parentId = static_cast<xcb_window_t>(parent->winId());
        xcb_change_property(connection, XCB_PROP_MODE_REPLACE, id, XCB_ATOM_WM_TRANSIENT_FOR, XCB_ATOM_WINDOW, 32,
                            1, &parentId);
    } else {
        xcb_delete_property(connection, id, XCB_ATOM_WM_TRANSIENT_FOR);
    }
    xcb_flush(connection);
}

}  // namespace

void LinuxWindowSystem::makeKeyAndOrderFront(QWidget& window) {
    if (window.isMinimized()) {
        window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
    }
    window.show();
    window.raise();
    window.activateWindow();
    if (xcb_connection_t* connection = x11_display::connection()) {
        if (window.windowHandle()->transientParent() != nullptr) {
            writeTransientParent(connection, *window.windowHandle());
        }
        requestActivationAsPager(connection, static_cast<xcb_window_t>(window.winId()));
    }
}

void LinuxWindowSystem::keepOutOfTaskBars(QWidget& window) {
    xcb_connection_t* const connection = x11_display::connection();
    if (connection == nullptr) {
        return;
    }
    const std::array states{x11_display::atom(connection, "_NET_WM_STATE_SKIP_TASKBAR"),
                            x11_display::atom(connection, "_NET_WM_STATE_SKIP_PAGER")};
    constexpr std::uint8_t bits = 32;
    xcb_change_property(connection, XCB_PROP_MODE_APPEND, static_cast<xcb_window_t>(window.winId()),
                        x11_display::atom(connection, "_NET_WM_STATE"), XCB_ATOM_ATOM, bits, states.size(),
                        states.data());
}

void LinuxWindowSystem::setFloatingLevel(QWidget& window, bool isFloating) {
    Qt::WindowFlags flags = window.windowFlags();
    if (flags.testFlag(Qt::WindowStaysOnTopHint) == isFloating) {
        return;
    }
    flags.setFlag(Qt::WindowStaysOnTopHint, isFloating);
    // QWidget::setWindowFlags would hide and recreate the window; the QWindow requests a state change of the
    // existing one.
    window.overrideWindowFlags(flags);
    if (QWindow* handle = window.windowHandle()) {
        handle->setFlags(flags);
    }
}

std::unique_ptr<WithdrawalGuard> LinuxWindowSystem::guardAgainstWithdrawal(QWidget& window) {
    return guardAgainstX11Withdrawal(window, *this);
}

bool LinuxWindowSystem::canPlaceWindows() const {
    return !QGuiApplication::platformName().startsWith(QLatin1StringView("wayland"));
}

QRect LinuxWindowSystem::availableArea(const QScreen& screen) const {
    return strip_layout::clearOf(statusBar_.overlay(), areaClearOfPanels(screen));
}

QRect LinuxWindowSystem::areaClearOfPanels(const QScreen& screen) const {
    return PanelSpace().freeArea(screen);
}

void LinuxWindowSystem::onPanelsChanged(std::function<void()> onChange) {
    panels_ = onChange ? std::make_unique<PanelSpaceMonitor>(std::move(onChange)) : nullptr;
}

void LinuxWindowSystem::keepAbove(QWidget& window, QWidget* other) {
    window.winId();  // creates the window if necessary
    window.windowHandle()->setTransientParent(other != nullptr ? other->windowHandle() : nullptr);
    if (xcb_connection_t* connection = x11_display::connection()) {
        writeTransientParent(connection, *window.windowHandle());
    }
}

std::unique_ptr<PressMonitor> LinuxWindowSystem::watchPresses(std::function<void()> onPress) {
    return watchX11Presses(std::move(onPress));
}

}  // namespace kestro
