#include "shell/macos/mac_window_system.h"

#include "shell/macos/window_style.h"

#include <QEvent>
#include <QScreen>
#include <QWindow>

#include <utility>

namespace kestro {

namespace {

/// On a window: whether it floats. The window of the system comes and goes behind the toolkit's.
constexpr const char* floatingProperty = "kestroFloatingLevel";

bool isOfApplication(const QWidget& window) {
    return window.windowType() == Qt::Window;
}

NativeWindowStyle styleOf(const QWidget& window) {
    return window.minimumSize() == window.maximumSize() ? window_style::ofFixedWindow
                                                        : window_style::ofResizableWindow;
}

/// Zero for a widget without a window of the system.
NativeView viewOf(const QWidget& window) {
    return window.testAttribute(Qt::WA_WState_Created) ? static_cast<NativeView>(window.effectiveWinId()) : 0;
}

class NativePressMonitor final : public PressMonitor {
public:
    explicit NativePressMonitor(std::unique_ptr<NativeWatch> watch) : watch_(std::move(watch)) {}

private:
    const std::unique_ptr<NativeWatch> watch_;
};

/// The widget itself hears of the system's changes only after the filters of its window.
bool isInFullScreen(const QWidget& window) {
    const QWindow* const handle = window.windowHandle();
    return handle != nullptr && handle->windowStates().testFlag(Qt::WindowFullScreen);
}

}  // namespace

void MacWindowSystem::makeKeyAndOrderFront(QWidget& window) {
    if (window.isMinimized()) {
        window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
    }
    dress(window);
    window.show();
    applyLevel(window);  // the toolkit may have set its own
    window.raise();
    application_.activate();
    window.activateWindow();
}

void MacWindowSystem::keepOutOfTaskBars(QWidget& window) {
    windows_.dressPopover(static_cast<NativeView>(window.winId()), window_style::ofPopover);
}

void MacWindowSystem::setFloatingLevel(QWidget& window, bool isFloating) {
    window.setProperty(floatingProperty, isFloating);
    applyLevel(window);
}

QRect MacWindowSystem::availableArea(const QScreen& screen) const {
    return screen.availableGeometry();
}

void MacWindowSystem::keepAbove(QWidget& window, QWidget* other) {
    above_.removeIf([&window](Stack::iterator entry) { return entry.value() == &window; });
    if (other != nullptr) {
        other->installEventFilter(this);
        above_[other] = &window;
        stack(other);
    }
}

std::unique_ptr<PressMonitor> MacWindowSystem::watchPresses(std::function<void()> onPress) {
    auto watch = application_.watchPresses(std::move(onPress));
    return watch ? std::make_unique<NativePressMonitor>(std::move(watch)) : nullptr;
}

bool MacWindowSystem::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::WindowActivate) {
        stack(watched);
    } else if (auto* const handle = qobject_cast<QWindow*>(watched);
               handle != nullptr && event->type() == QEvent::WindowStateChange) {
        if (QWidget* const window = QWidget::find(handle->winId())) {
            dress(*window);
        }
    }
    return QObject::eventFilter(watched, event);
}

void MacWindowSystem::dress(QWidget& window) {
    if (!isOfApplication(window)) {
        return;
    }
    const auto view = static_cast<NativeView>(window.winId());
    window.windowHandle()->installEventFilter(this);
    if (!isInFullScreen(window)) {
        windows_.dress(view, styleOf(window));
        applyLevel(window);
    }
}

void MacWindowSystem::applyLevel(QWidget& window) {
    const NativeView view = viewOf(window);
    if (view != 0 && isOfApplication(window) && !isInFullScreen(window)) {
        const bool isFloating = window.property(floatingProperty).toBool();
        windows_.setLevel(view, isFloating ? window_style::floatingLevel : window_style::normalLevel);
    }
}

void MacWindowSystem::stack(const QObject* other) {
    const auto* const lower = qobject_cast<const QWidget*>(other);
    const QWidget* const upper = above_.value(other);
    if (lower != nullptr && upper != nullptr && lower->isVisible() && upper->isVisible()) {
        windows_.orderAbove(viewOf(*upper), viewOf(*lower));
    }
}

}  // namespace kestro
