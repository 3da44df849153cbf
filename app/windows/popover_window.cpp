#include "app/windows/popover_window.h"

#include "app/windows/window_geometry.h"
#include "app/windows/window_system.h"

#include <QApplication>
#include <QKeyEvent>
#include <QScopedValueRollback>
#include <QScreen>

#include <chrono>
#include <utility>

namespace kestro {

namespace {

using namespace std::chrono_literals;

// Longer than a click with a slow finger, shorter than two deliberate ones.
constexpr auto clickDuration = 500ms;

QScreen* screenOf(const QRect& anchor) {
    QScreen* screen = anchor.isNull() ? nullptr : QGuiApplication::screenAt(anchor.center());
    return screen != nullptr ? screen : QGuiApplication::primaryScreen();
}

}  // namespace

PopoverWindow::PopoverWindow(WindowDelegate& delegate, const Clock& clock, ContentFactory makeContent)
    : SurfaceWindow(delegate, std::move(makeContent), QStringLiteral("Kestro"),
                    Qt::Tool | Qt::WindowStaysOnTopHint),
      clock_(clock) {
    setFixedSize(popoverSize);
}

void PopoverWindow::showRelativeTo(const QRect& anchor) {
    dismissedAt_.reset();
    if (const QScreen* screen = screenOf(anchor)) {
        move(popoverFrame(anchor, popoverSize, screen->geometry(), screen->availableGeometry()).topLeft());
    }
    makeKeyAndOrderFront(*this);
}

bool PopoverWindow::wasJustDismissed() const {
    return dismissedAt_ && clock_.monotonicNow() - *dismissedAt_ < clickDuration;
}

void PopoverWindow::setVisible(bool visible) {
    // A window that is being hidden loses the keyboard for that reason, not by the user's click.
    const QScopedValueRollback guard(isChangingVisibility_, true);
    SurfaceWindow::setVisible(visible);
}

void PopoverWindow::visibilityDidChange() {
    if (isVisible()) {
        delegate().popoverDidShow();
    } else {
        delegate().popoverDidClose();
    }
}

bool PopoverWindow::event(QEvent* event) {
    // Its own menus take the keyboard too, and closing under them would leave them in the air.
    if (event->type() == QEvent::WindowDeactivate && isVisible() && !isChangingVisibility_ &&
        QApplication::activePopupWidget() == nullptr) {
        dismiss();
    }
    return SurfaceWindow::event(event);
}

void PopoverWindow::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Cancel)) {
        hide();
        return;
    }
    SurfaceWindow::keyPressEvent(event);
}

void PopoverWindow::dismiss() {
    dismissedAt_ = clock_.monotonicNow();
    hide();
}

}  // namespace kestro
