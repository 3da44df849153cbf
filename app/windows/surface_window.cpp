#include "app/windows/surface_window.h"

#include "shell/window_system.h"
#include "ui/controls/view_accessible.h"

#include <QApplication>
#include <QCloseEvent>
#include <QMouseEvent>
#include <QScreen>
#include <QWindow>

#include <utility>

namespace kestro {

namespace {

int sharedArea(const QScreen& screen, const QRect& frame) {
    const QRect shared = screen.geometry() & frame;
    return shared.width() * shared.height();
}

}  // namespace

SurfaceWindow::SurfaceWindow(WindowDelegate& delegate, WindowSystem& system, ContentFactory makeContent,
                             const QString& title, Qt::WindowFlags type)
    : QWidget(nullptr, type | Qt::FramelessWindowHint),
      delegate_(delegate),
      system_(system),
      makeContent_(std::move(makeContent)),
      withdrawalGuard_(system.guardAgainstWithdrawal(*this)) {
    // Install it before the first accessibility query for this window, whose answer is cached.
    installViewAccessibility();
    setWindowTitle(title);
    setAttribute(Qt::WA_TranslucentBackground);
    setAttribute(Qt::WA_QuitOnClose, false);
}

QRect SurfaceWindow::availableArea() const {
    const QScreen* shown = screen();
    if (shown == nullptr) {
        return {};
    }
    // The toolkit assigns a window to the screen of its centre, and only while it is shown.
    for (const QScreen* other : QGuiApplication::screens()) {
        if (system_.canPlaceWindows() && sharedArea(*other, geometry()) > sharedArea(*shown, geometry())) {
            shown = other;
        }
    }
    return system_.availableArea(*shown);
}

void SurfaceWindow::releaseContent() {
    if (!isVisible()) {
        delete std::exchange(content_, nullptr);
        destroy();
    }
}

void SurfaceWindow::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    if (event->spontaneous()) {
        return;
    }
    scale_ = screen()->devicePixelRatio();
    connect(windowHandle(), &QWindow::screenChanged, this, &SurfaceWindow::screenDidChange, Qt::UniqueConnection);
    if (content_ == nullptr && makeContent_) {
        content_ = makeContent_(this);
        content_->setGeometry(rect());
        content_->show();
    }
    visibilityDidChange();
}

void SurfaceWindow::screenDidChange(const QScreen* screen) {
    if (screen != nullptr) {
        keepSizeAtScale(screen->devicePixelRatio(), size());
    }
}

void SurfaceWindow::keepSizeAtScale(double scale, const QSize& size) {
    const bool isScaleNew = std::exchange(scale_, scale) != scale;
    if (!isScaleNew || keptSize_ || windowState().testAnyFlags(Qt::WindowFullScreen | Qt::WindowMaximized)) {
        return;
    }
    keptSize_ = size;
    QMetaObject::invokeMethod(this, &SurfaceWindow::scaleDidChange, Qt::QueuedConnection);
}

void SurfaceWindow::scaleDidChange() {
    const QSize kept = *std::exchange(keptSize_, std::nullopt);
    if (QWindow* const handle = windowHandle()) {
        // Qt has told the window system the smallest size in pixels of the old scale.
        const QSize smallest = handle->minimumSize();
        handle->setMinimumSize({0, 0});
        handle->setMinimumSize(smallest);
    }
    keepSize(kept);
}

void SurfaceWindow::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    pressedAt_.reset();
    if (!event->spontaneous()) {
        visibilityDidChange();
    }
}

void SurfaceWindow::closeEvent(QCloseEvent* event) {
    event->setAccepted(delegate_.windowShouldClose(*this));
}

void SurfaceWindow::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::WindowStateChange && isVisible()) {
        visibilityDidChange();
    }
}

void SurfaceWindow::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    if (isVisible() && system_.canPlaceWindows()) {
        // The toolkit divides the pixels of a window by the scale of its new screen: Qt 6.4 after it has reported
        // the screen, Qt 6.8 before.
        keepSizeAtScale(screen()->devicePixelRatio(), event->oldSize());
    }
    if (content_ != nullptr) {
        content_->setGeometry(rect());
    }
}

void SurfaceWindow::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) {
        return;
    }
    const bool isTaken = backgroundPressed(event->position().toPoint());
    pressedAt_ = isTaken ? std::nullopt : std::optional(event->globalPosition().toPoint());
}

void SurfaceWindow::mouseDoubleClickEvent(QMouseEvent*) {
    // The second press of a double click starts no drag: the window may already be moving.
    pressedAt_.reset();
}

void SurfaceWindow::mouseMoveEvent(QMouseEvent* event) {
    if (!pressedAt_ || !event->buttons().testFlag(Qt::LeftButton) || isFullScreen()) {
        return;
    }
    // On the screen, not in the window, which may move under a resting pointer.
    const QPoint distance = event->globalPosition().toPoint() - *pressedAt_;
    // Wait for a real drag: the window manager takes the pointer away, and a double click still needs it.
    if (distance.manhattanLength() < QApplication::startDragDistance()) {
        return;
    }
    if (windowHandle()->startSystemMove()) {
        pressedAt_.reset();
    } else {
        move(pos() + distance);
        pressedAt_ = event->globalPosition().toPoint();
    }
}

void SurfaceWindow::mouseReleaseEvent(QMouseEvent*) {
    pressedAt_.reset();
}

}  // namespace kestro
