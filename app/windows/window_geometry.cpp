#include "app/windows/window_geometry.h"

#include <QMargins>

#include <algorithm>
#include <cstdlib>

namespace kestro {

namespace {

constexpr int popoverGap = 6;
constexpr QMargins screenMargins(8, 8, 8, 8);
constexpr int zoomTolerance = 10;
constexpr QSize zoomFallbackSize{1100, 480};
constexpr int titleButtonsWidth = 148;
constexpr int resizeBorder = 5;
constexpr int resizeCorner = 12;

// QRect::right() and bottom() name the last pixel inside; these name the edge.
int rightEdge(const QRect& rect) {
    return rect.x() + rect.width();
}

int bottomEdge(const QRect& rect) {
    return rect.y() + rect.height();
}

bool isNear(int left, int right) {
    return std::abs(left - right) <= zoomTolerance;
}

/// The start of a stretch of `length`, as close to `wanted` as possible between `low` and `high`; `low` if there
/// is no room.
int fitted(int wanted, int length, int low, int high) {
    return std::max(low, std::min(wanted, high - length));
}

QRect movedInside(const QRect& frame, const QRect& area) {
    return {fitted(frame.x(), frame.width(), area.x(), rightEdge(area)),
            fitted(frame.y(), frame.height(), area.y(), bottomEdge(area)), frame.width(), frame.height()};
}

QPoint popoverOrigin(const QRect& anchor, QSize size, const QRect& available) {
    const QPoint centre = anchor.center();
    if (centre.x() < available.x()) {
        return {rightEdge(anchor) + popoverGap, anchor.y()};
    }
    if (centre.x() >= rightEdge(available)) {
        return {anchor.x() - popoverGap - size.width(), anchor.y()};
    }
    const int x = rightEdge(anchor) - size.width();
    const bool opensUpwards = centre.y() > available.center().y();
    return {x, opensUpwards ? anchor.y() - popoverGap - size.height() : bottomEdge(anchor) + popoverGap};
}

}  // namespace

QRect popoverFrame(const QRect& anchor, QSize size, const QRect& screen, const QRect& available) {
    QPoint origin;
    if (anchor.isNull()) {
        const bool onlyABottomPanel = available.y() == screen.y() && bottomEdge(available) < bottomEdge(screen);
        origin = {rightEdge(available), onlyABottomPanel ? bottomEdge(available) - popoverGap - size.height()
                                                         : available.y() + popoverGap};
    } else {
        origin = popoverOrigin(anchor, size, available);
    }
    return movedInside({origin, size}, available.intersected(screen.marginsRemoved(screenMargins)));
}

QRect placeOnScreen(const QRect& frame, const QRect& available) {
    if (available.contains(frame)) {
        return frame;
    }
    const QRect area = available.marginsRemoved(screenMargins);
    return movedInside({frame.topLeft(), frame.size().boundedTo(area.size())}, area);
}

QRect resizedKeepingBottomLeft(const QRect& frame, QSize size) {
    return {frame.x(), bottomEdge(frame) - size.height(), size.width(), size.height()};
}

QRect automaticDashboardFrame(const QRect& frame, int optimalWidth) {
    const QSize size(optimalWidth, std::max(frame.height(), dashboardHeight));
    return resizedKeepingBottomLeft(frame.translated(-(optimalWidth - frame.width()) / 2, 0), size);
}

bool fills(const QRect& frame, const QRect& available) {
    return isNear(frame.width(), available.width()) && isNear(frame.height(), available.height()) &&
           isNear(frame.x(), available.x()) && isNear(frame.y(), available.y());
}

WindowedZoom windowedZoom(const QRect& frame, const std::optional<QRect>& preZoomFrame, const QRect& available) {
    if (!fills(frame, available)) {
        return {available, frame};
    }
    return {preZoomFrame ? *preZoomFrame : centred(zoomFallbackSize, available), std::nullopt};
}

bool isInTitleBand(QPoint position, QSize content) {
    return position.y() >= 0 && position.y() <= titleBandHeight &&
           position.x() < content.width() - titleButtonsWidth;
}

Qt::Edges resizeEdges(QPoint position, QSize content) {
    const int left = position.x();
    const int top = position.y();
    const int right = content.width() - 1 - position.x();
    const int bottom = content.height() - 1 - position.y();
    const bool isInCorner = std::min(left, right) < resizeCorner && std::min(top, bottom) < resizeCorner;
    const int reach = isInCorner ? resizeCorner : resizeBorder;
    Qt::Edges edges;
    edges.setFlag(Qt::LeftEdge, left < reach);
    edges.setFlag(Qt::TopEdge, top < reach);
    edges.setFlag(Qt::RightEdge, right < reach);
    edges.setFlag(Qt::BottomEdge, bottom < reach);
    return edges;
}

QRect centred(QSize size, const QRect& available) {
    return {available.x() + (available.width() - size.width()) / 2,
            available.y() + (available.height() - size.height()) / 2, size.width(), size.height()};
}

}  // namespace kestro
