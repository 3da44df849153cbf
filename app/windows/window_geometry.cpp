#include "app/windows/window_geometry.h"

#include <algorithm>
#include <cstdlib>

namespace kestro {

namespace {

constexpr int popoverGap = 6;
constexpr int screenMargin = 8;
constexpr int zoomTolerance = 10;
constexpr QSize zoomFallbackSize{1100, 480};
constexpr int titleButtonsWidth = 148;
constexpr int resizeBorder = 5;
constexpr int resizeCorner = 12;
constexpr int settingsMinimumHeight = 480;

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

QRect keptInside(const QRect& frame, const QRect& screen, const QRect& available) {
    const QRect inner =
        available.intersected(screen.marginsRemoved({screenMargin, screenMargin, screenMargin, screenMargin}));
    return {fitted(frame.x(), frame.width(), inner.x(), rightEdge(inner)),
            fitted(frame.y(), frame.height(), inner.y(), bottomEdge(inner)), frame.width(), frame.height()};
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
    return keptInside({origin, size}, screen, available);
}

QRect resizedKeepingBottomLeft(const QRect& frame, QSize size, const QRect& available) {
    const int wantedY = bottomEdge(frame) - size.height();
    return {frame.x(), fitted(wantedY, titleBandHeight, available.y(), bottomEdge(available)), size.width(),
            size.height()};
}

QRect automaticDashboardFrame(const QRect& frame, int optimalWidth, const QRect& available) {
    const QSize size(optimalWidth, std::max(frame.height(), dashboardHeight));
    const QRect aboutItsCentre(frame.x() - (optimalWidth - frame.width()) / 2, frame.y(), frame.width(),
                               frame.height());
    return resizedKeepingBottomLeft(aboutItsCentre, size, available);
}

WindowedZoom windowedZoom(const QRect& frame, const std::optional<QRect>& preZoomFrame, const QRect& available) {
    const bool fills = isNear(frame.width(), available.width()) && isNear(frame.height(), available.height()) &&
                       isNear(frame.x(), available.x()) && isNear(frame.y(), available.y());
    if (!fills) {
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
    if (std::min({left, top, right, bottom}) >= resizeBorder) {
        return {};
    }
    // On the border, a position near a corner counts for both of its edges.
    Qt::Edges edges;
    edges.setFlag(Qt::LeftEdge, left < resizeCorner);
    edges.setFlag(Qt::TopEdge, top < resizeCorner);
    edges.setFlag(Qt::RightEdge, right < resizeCorner);
    edges.setFlag(Qt::BottomEdge, bottom < resizeCorner);
    return edges;
}

QRect centred(QSize size, const QRect& available) {
    return {available.x() + (available.width() - size.width()) / 2,
            available.y() + (available.height() - size.height()) / 2, size.width(), size.height()};
}

QSize settingsWindowSize(const QRect& available) {
    return {settingsSize.width(), std::clamp(available.height(), settingsMinimumHeight, settingsSize.height())};
}

}  // namespace kestro
