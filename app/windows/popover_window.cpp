#include "app/windows/popover_window.h"

#include "app/windows/window_geometry.h"
#include "shell/window_system.h"
#include "ui/popover/popover_geometry.h"
#include "ui/theme/motion.h"

#include <QApplication>
#include <QCloseEvent>
#include <QCursor>
#include <QKeyEvent>
#include <QScreen>

#include <chrono>
#include <utility>

namespace kestro {

namespace {

using namespace std::chrono_literals;

// Longer than a slow click, shorter than two deliberate ones.
constexpr auto clickDuration = 500ms;

constexpr double riseDistance = 4;

QScreen* screenOf(const QRect& anchor) {
    QScreen* screen = anchor.isNull() ? nullptr : QGuiApplication::screenAt(anchor.center());
    return screen != nullptr ? screen : QGuiApplication::primaryScreen();
}

}  // namespace

PopoverWindow::PopoverWindow(WindowDelegate& delegate, WindowSystem& system, const Clock& clock,
                             ContentFactory makeContent)
    : SurfaceWindow(delegate, system, std::move(makeContent), QStringLiteral("Kestro"),
                    Qt::Tool | Qt::WindowStaysOnTopHint),
      clock_(clock) {
    setFixedSize(popover_geometry::size);
    fade_.setEasingCurve(QEasingCurve::OutCubic);
    QObject::connect(&fade_, &QVariantAnimation::valueChanged, this,
                     [this](const QVariant& value) { takeStep(value.toDouble()); });
    QObject::connect(&fade_, &QVariantAnimation::finished, this, [this] {
        if (!isShown_) {
            hide();
        }
    });
}

PopoverWindow::~PopoverWindow() = default;

void PopoverWindow::showRelativeTo(const QRect& anchor) {
    dismissal_.reset();
    isShown_ = true;
    qApp->installEventFilter(this);
    restBeside(anchor);
    fadeTo(1, fadeDuration(motion::popoverOpen));
    system().makeKeyAndOrderFront(*this);
    pressMonitor_ = system().watchPresses([this] { pressedSomewhere(); });
}

void PopoverWindow::moveBeside(const QRect& anchor) {
    if (!isShown_) {
        return;
    }
    restBeside(anchor);
    if (fade_.state() != QAbstractAnimation::Running) {
        takeStep(1);
    }
}

void PopoverWindow::orderOut() {
    if (!std::exchange(isShown_, false)) {
        return;
    }
    willHide();
    pressMonitor_.reset();
    const int milliseconds = fadeDuration(motion::popoverClose);
    if (milliseconds > 0) {
        fadeTo(0, milliseconds);
    } else {
        hide();
    }
    delegate().popoverDidClose();
}

bool PopoverWindow::takesBack(const QRect& item) {
    const std::optional<Dismissal> dismissal = std::exchange(dismissal_, std::nullopt);
    return dismissal && clock_.monotonicNow() - dismissal->time < clickDuration &&
           (item.isNull() || item.contains(dismissal->pointer));
}

void PopoverWindow::showEvent(QShowEvent* event) {
    if (!event->spontaneous()) {
        system().keepOutOfTaskBars(*this);
    }
    SurfaceWindow::showEvent(event);
}

void PopoverWindow::visibilityDidChange() {
    if (isShown_) {
        delegate().popoverDidShow();
    }
}

void PopoverWindow::closeEvent(QCloseEvent* event) {
    event->ignore();
    if (delegate().windowShouldClose(*this)) {
        orderOut();
    }
}

bool PopoverWindow::event(QEvent* event) {
    // The popover's own menus take the keyboard too; closing under them would orphan them.
    if (event->type() == QEvent::WindowDeactivate && QApplication::activePopupWidget() == nullptr) {
        dismiss();
    }
    return SurfaceWindow::event(event);
}

bool PopoverWindow::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Show) {
        const auto* const widget = qobject_cast<QWidget*>(watched);
        if (widget != nullptr && widget->windowType() == Qt::Popup && !(isShown_ && isOwn(*widget))) {
            // The press that opens another menu may come before the popover is active or receives the press, and
            // its fade would end the menu.
            orderOut();
            fade_.stop();
            hide();
        }
    }
    return SurfaceWindow::eventFilter(watched, event);
}

bool PopoverWindow::isOwn(const QWidget& menu) const {
    const QObject* ancestor = &menu;
    while (ancestor != nullptr && ancestor != this) {
        ancestor = ancestor->parent();
    }
    return ancestor != nullptr;
}

void PopoverWindow::hideEvent(QHideEvent* event) {
    // A window manager that hides it may show it again.
    if (!event->spontaneous()) {
        qApp->removeEventFilter(this);
    }
    SurfaceWindow::hideEvent(event);
}

void PopoverWindow::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Cancel)) {
        orderOut();
        return;
    }
    SurfaceWindow::keyPressEvent(event);
}

void PopoverWindow::restBeside(const QRect& anchor) {
    if (const QScreen* screen = screenOf(anchor)) {
        restingPlace_ =
            popoverFrame(anchor, popover_geometry::size, screen->geometry(), system().areaClearOfPanels(*screen))
                .topLeft();
    }
}

void PopoverWindow::dismiss() {
    if (isShown_) {
        dismissal_ = {clock_.monotonicNow(), QCursor::pos()};
        orderOut();
    }
}

void PopoverWindow::pressedSomewhere() {
    if (QApplication::activePopupWidget() == nullptr && !geometry().contains(QCursor::pos())) {
        dismiss();
    }
}

int PopoverWindow::fadeDuration(std::chrono::milliseconds wanted) const {
    return system().canPlaceWindows() ? motion::duration(wanted) : 0;
}

void PopoverWindow::fadeTo(double opacity, int milliseconds) {
    fade_.stop();
    if (milliseconds == 0) {
        takeStep(opacity);
        return;
    }
    fade_.setDuration(milliseconds);
    fade_.setStartValue(isVisible() ? windowOpacity() : 1 - opacity);
    fade_.setEndValue(opacity);
    fade_.start();
    takeStep(fade_.startValue().toDouble());
}

void PopoverWindow::takeStep(double opacity) {
    if (!system().canPlaceWindows()) {
        return;
    }
    setWindowOpacity(opacity);
    // It rises into place when it opens, and stays there when it closes.
    const double distance = isShown_ ? (1 - opacity) * riseDistance : 0;
    move(restingPlace_ + QPoint(0, qRound(distance)));
}

}  // namespace kestro
