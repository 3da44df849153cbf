#include "ui/paint/tall_shapes.h"

#include "ui/paint/hairline.h"

#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <QPen>

#include <algorithm>
#include <cmath>
#include <optional>

namespace kestro {

namespace {

/// Of a line of pixels with smooth ends.
constexpr double spansPerLine = 3;

/// The height of the ends that hold the rounded corners, in whole device pixels; absent if the shape has no such
/// ends or is low enough to be painted at once.
std::optional<double> endHeight(const QPainter& painter, const QRectF& area, double radius) {
    const double scale = deviceScale(painter);
    const double end = std::ceil(radius * scale) / scale;
    const bool hasEnds = radius > 0 && 2 * end < std::min(area.width(), area.height());
    return hasEnds && area.height() * scale * spansPerLine > mostSpans ? std::optional(end) : std::nullopt;
}

/// The top end of a rounded rectangle from its lower left corner to its lower right one.
QPainterPath topEnd(const QRectF& area, double radius, double height) {
    const double diameter = 2 * radius;
    QPainterPath path(QPointF(area.left(), area.top() + height));
    path.lineTo(area.left(), area.top() + radius);
    path.arcTo(QRectF(area.left(), area.top(), diameter, diameter), 180, -90);
    path.arcTo(QRectF(area.right() - diameter, area.top(), diameter, diameter), 90, -90);
    path.lineTo(area.right(), area.top() + height);
    return path;
}

QPainterPath bottomEnd(const QRectF& area, double radius, double height) {
    const double diameter = 2 * radius;
    const double top = area.bottom() - diameter;
    QPainterPath path(QPointF(area.right(), area.bottom() - height));
    path.lineTo(area.right(), area.bottom() - radius);
    path.arcTo(QRectF(area.right() - diameter, top, diameter, diameter), 0, -90);
    path.arcTo(QRectF(area.left(), top, diameter, diameter), 270, -90);
    path.lineTo(area.left(), area.bottom() - height);
    return path;
}

}  // namespace

void drawPixels(QPainter& painter, const QPoint& corner, const QImage& image) {
    const QTransform world = painter.worldTransform();
    painter.setWorldTransform(painter.deviceTransform().inverted() * world);
    for (int top = 0; top < image.height(); top += mostSpans) {
        painter.drawImage(corner + QPoint(0, top), image, QRect(0, top, image.width(), mostSpans));
    }
    painter.setWorldTransform(world);
}

void fillInBands(QPainter& painter, const QRectF& area, const QColor& color) {
    const double band = mostSpans / deviceScale(painter);
    for (double top = area.top(); top < area.bottom(); top += band) {
        painter.fillRect(QRectF(area.left(), top, area.width(), std::min(band, area.bottom() - top)), color);
    }
}

void fillTallRounded(QPainter& painter, const QRectF& area, double radius, const QColor& color) {
    const auto end = endHeight(painter, area, radius);
    if (!end) {
        QPainterPath whole;
        whole.addRoundedRect(area, radius, radius);
        painter.fillPath(whole, color);
        return;
    }
    painter.fillPath(topEnd(area, radius, *end), color);
    fillInBands(painter, area.adjusted(0, *end, 0, -*end), color);
    painter.fillPath(bottomEnd(area, radius, *end), color);
}

void outlineTallRounded(QPainter& painter, const QRectF& area, double radius, const QPen& pen) {
    const double width = pen.widthF();
    const double inset = width / 2;
    const QRectF line = area.adjusted(inset, inset, -inset, -inset);
    const double lineRadius = std::max(0.0, radius - inset);
    const auto end = lineRadius > 0 ? endHeight(painter, area, radius) : std::nullopt;
    if (!end) {
        QPainterPath whole;
        whole.addRoundedRect(line, lineRadius, lineRadius);
        painter.strokePath(whole, pen);
        return;
    }
    painter.strokePath(topEnd(line, lineRadius, *end - inset), pen);
    for (const double left : {area.left(), area.right() - width}) {
        fillInBands(painter, QRectF(left, area.top() + *end, width, area.height() - 2 * *end), pen.color());
    }
    painter.strokePath(bottomEnd(line, lineRadius, *end - inset), pen);
}

}  // namespace kestro
