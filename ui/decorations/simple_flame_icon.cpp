#include "ui/decorations/simple_flame_icon.h"

#include <QPainter>
#include <QTransform>

namespace kestro {

namespace {

// The bounds of the unit path.
constexpr double leftEdge = 4.2;
constexpr double rightEdge = 19.8;
constexpr double topEdge = 1.8;
constexpr double bottomEdge = 22.6;
constexpr double shoulder = 15;
constexpr double bellyHeight = bottomEdge - shoulder;

QPainterPath unitPath() {
    QPainterPath path(QPointF(13.1, topEdge));
    path.cubicTo(13.6, 6.2, rightEdge, 8.4, rightEdge, shoulder);
    const QRectF belly(leftEdge, shoulder - bellyHeight, rightEdge - leftEdge, 2 * bellyHeight);
    path.arcTo(belly, 0, -180);
    path.cubicTo(leftEdge, 11.4, 6.4, 9.4, 7.6, 6.9);
    path.cubicTo(8.8, 8, 9.4, 9.4, 9.5, 11);
    path.cubicTo(11.4, 9, 12.9, 5.8, 13.1, topEdge);
    path.closeSubpath();
    return path;
}

}  // namespace

QPainterPath simpleFlamePath(const QRectF& rect) {
    if (rect.isEmpty()) {
        return {};
    }
    QTransform toRect = QTransform::fromTranslate(rect.left(), rect.top());
    toRect.scale(rect.width() / (rightEdge - leftEdge), rect.height() / (bottomEdge - topEdge));
    toRect.translate(-leftEdge, -topEdge);
    return toRect.map(unitPath());
}

void SimpleFlameIcon::paint(QPainter& painter, const QRectF& rect) const {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(simpleFlamePath(rect), color);
    painter.restore();
}

}  // namespace kestro
