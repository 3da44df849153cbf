#include "ui/decorations/simple_flame_icon.h"

#include <QPainter>
#include <QTransform>

namespace kestro {

namespace {

// The bounds of the unit path.
constexpr double kLeft = 4.2;
constexpr double kRight = 19.8;
constexpr double kTop = 1.8;
constexpr double kBottom = 22.6;
constexpr double kShoulder = 15;
constexpr double kBellyHeight = kBottom - kShoulder;

QPainterPath unitPath() {
    QPainterPath path(QPointF(13.1, kTop));
    path.cubicTo(13.6, 6.2, kRight, 8.4, kRight, kShoulder);
    const QRectF belly(kLeft, kShoulder - kBellyHeight, kRight - kLeft, 2 * kBellyHeight);
    path.arcTo(belly, 0, -180);
    path.cubicTo(kLeft, 11.4, 6.4, 9.4, 7.6, 6.9);
    path.cubicTo(8.8, 8, 9.4, 9.4, 9.5, 11);
    path.cubicTo(11.4, 9, 12.9, 5.8, 13.1, kTop);
    path.closeSubpath();
    return path;
}

}  // namespace

QPainterPath simpleFlamePath(const QRectF& rect) {
    if (rect.isEmpty()) {
        return {};
    }
    QTransform toRect = QTransform::fromTranslate(rect.left(), rect.top());
    toRect.scale(rect.width() / (kRight - kLeft), rect.height() / (kBottom - kTop));
    toRect.translate(-kLeft, -kTop);
    return toRect.map(unitPath());
}

void SimpleFlameIcon::paint(QPainter& painter, const QRectF& rect) const {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(simpleFlamePath(rect), color);
    painter.restore();
}

}  // namespace kestro
