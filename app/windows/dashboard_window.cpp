#include "app/windows/dashboard_window.h"

#include "app/windows/window_geometry.h"
#include "shell/window_system.h"

#include <QHoverEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QWindow>

#include <utility>

namespace kestro {

namespace {

Qt::CursorShape cursorFor(Qt::Edges edges) {
    if (edges == (Qt::LeftEdge | Qt::TopEdge) || edges == (Qt::RightEdge | Qt::BottomEdge)) {
        return Qt::SizeFDiagCursor;
    }
    if (edges == (Qt::RightEdge | Qt::TopEdge) || edges == (Qt::LeftEdge | Qt::BottomEdge)) {
        return Qt::SizeBDiagCursor;
    }
    return edges.testAnyFlags(Qt::LeftEdge | Qt::RightEdge) ? Qt::SizeHorCursor : Qt::SizeVerCursor;
}

}  // namespace

KestroDashboardWindow::KestroDashboardWindow(WindowDelegate& delegate, WindowSystem& system,
                                             ContentFactory makeContent, int width)
    : SurfaceWindow(delegate, system, std::move(makeContent), QStringLiteral("Kestro Studio Dashboard")),
      frameAnimation_(*this) {
    setMinimumSize(dashboardMinimumSize);
    setAttribute(Qt::WA_Hover);
    resize(width, dashboardHeight);
    settledSize_ = size();
}

void KestroDashboardWindow::toggleWindowedFullScreen() {
    if (isFullScreen()) {
        return;
    }
    if (!system().canPlaceWindows()) {
        setWindowState(windowState() ^ Qt::WindowMaximized);
        return;
    }
    const QRect available = availableArea();
    if (available.isNull()) {
        return;
    }
    const WindowedZoom zoom = windowedZoom(frameAnimation_.frame(), preZoomFrame_, available);
    preZoomFrame_ = zoom.preZoomFrame;
    zoomedFrame_ = preZoomFrame_ ? zoom.frame : QRect();
    setFrame(placed(zoom.frame));
}

void KestroDashboardWindow::zoom() {
    if (isFullScreen()) {
        toggleFullScreen();
    } else {
        toggleWindowedFullScreen();
    }
}

void KestroDashboardWindow::toggleFullScreen() {
    // Leaving full screen restores this frame, so finish the motion first.
    frameAnimation_.finish();
    setWindowState(windowState() ^ Qt::WindowFullScreen);
}

void KestroDashboardWindow::resizeKeepingOrigin(QSize size) {
    if (!isFullScreen()) {
        setFrame(placed(resizedKeepingBottomLeft(frameAnimation_.frame(), size)));
    }
}

void KestroDashboardWindow::fitWidth(int optimalWidth) {
    setOwnFrame(placed(automaticDashboardFrame(frameAnimation_.frame(), optimalWidth)));
}

void KestroDashboardWindow::fitToScreen() {
    const QRect available = availableArea();
    if (windowState().testAnyFlags(Qt::WindowFullScreen | Qt::WindowMaximized) || available.isNull()) {
        return;
    }
    QRect wanted = frameAnimation_.frame();
    if (!std::exchange(isPlaced_, true)) {
        wanted = centred(size(), available);
    } else if (!zoomedFrame_.isNull() && fills(wanted, zoomedFrame_)) {
        zoomedFrame_ = available;
        wanted = available;
    }
    setOwnFrame(placed(wanted));
}

bool KestroDashboardWindow::backgroundPressed(QPoint position) {
    // From here on the user controls the frame.
    frameAnimation_.stop();
    const Qt::Edges edges = edgesAt(position);
    return edges != Qt::Edges() && windowHandle()->startSystemResize(edges);
}

void KestroDashboardWindow::keepSize(QSize points) {
    // Where it is: the user may be dragging it.
    resize(placed({pos(), points}).size());
}

bool KestroDashboardWindow::event(QEvent* event) {
    if (event->type() == QEvent::HoverMove) {
        showResizeCursor(static_cast<QHoverEvent*>(event)->position().toPoint());
    }
    return SurfaceWindow::event(event);
}

void KestroDashboardWindow::showEvent(QShowEvent* event) {
    SurfaceWindow::showEvent(event);
    // The window receives its events before the widget under the pointer does.
    windowHandle()->installEventFilter(this);
}

void KestroDashboardWindow::changeEvent(QEvent* event) {
    if (event->type() == QEvent::WindowStateChange) {
        const bool isNowFullScreen = isFullScreen();
        const bool changed = std::exchange(wasFullScreen_, isNowFullScreen) != isNowFullScreen;
        if (changed && isNowFullScreen) {
            delegate().windowWillEnterFullScreen(*this);
        } else if (changed) {
            delegate().windowDidExitFullScreen(*this);
        }
    }
    SurfaceWindow::changeEvent(event);
}

void KestroDashboardWindow::resizeEvent(QResizeEvent* event) {
    SurfaceWindow::resizeEvent(event);
    // Leaving full screen is not a resize, and neither is a change before the window is first visible.
    if (isFullScreen() || isChangingScale() || size() == settledSize_) {
        return;
    }
    settledSize_ = size();
    isFittingItself_ = isFittingItself_ && frameAnimation_.explains(size());
    if (isVisible() && !isFittingItself_) {
        delegate().windowDidResize(*this);
    }
}

bool KestroDashboardWindow::eventFilter(QObject* watched, QEvent* event) {
    if (watched == windowHandle() && event->type() == QEvent::MouseButtonDblClick) {
        const auto& click = static_cast<QMouseEvent&>(*event);
        if (click.button() == Qt::LeftButton && isInTitleBand(click.position().toPoint(), size())) {
            toggleWindowedFullScreen();
        }
    }
    return SurfaceWindow::eventFilter(watched, event);
}

void KestroDashboardWindow::keyPressEvent(QKeyEvent* event) {
    if (isFullScreen() && event->matches(QKeySequence::Cancel)) {
        toggleFullScreen();
        return;
    }
    SurfaceWindow::keyPressEvent(event);
}

void KestroDashboardWindow::setFrame(const QRect& frame) {
    isFittingItself_ = false;
    if (isMaximized()) {
        setWindowState(windowState() & ~Qt::WindowMaximized);
    }
    moveTo(frame);
}

void KestroDashboardWindow::setOwnFrame(const QRect& frame) {
    if (frame == frameAnimation_.frame()) {
        setMinimumSize(dashboardMinimumSize.boundedTo(frame.size()));
        return;
    }
    isFittingItself_ = true;
    moveTo(frame);
}

void KestroDashboardWindow::moveTo(const QRect& frame) {
    const QSize smallest = dashboardMinimumSize.boundedTo(frame.size());
    setMinimumSize(smallest.boundedTo(size()));
    frameAnimation_.start(frame);
    // Raising it above the current size resizes the window, which only the motion that has begun explains.
    setMinimumSize(smallest);
}

QRect KestroDashboardWindow::placed(const QRect& wanted) const {
    const QRect available = availableArea();
    return available.isNull() ? wanted : placeOnScreen(wanted, available);
}

Qt::Edges KestroDashboardWindow::edgesAt(QPoint position) const {
    return isFullScreen() || system().resizesAtEdges() ? Qt::Edges() : resizeEdges(position, size());
}

void KestroDashboardWindow::showResizeCursor(QPoint position) {
    const Qt::Edges edges = edgesAt(position);
    if (edges == Qt::Edges()) {
        unsetCursor();
    } else {
        setCursor(cursorFor(edges));
    }
}

}  // namespace kestro
