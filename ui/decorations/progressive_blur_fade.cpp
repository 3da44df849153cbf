#include "ui/decorations/progressive_blur_fade.h"

#include <QPainter>

namespace kestro {

namespace {

QColor mask(double opacity) {
    return QColor::fromRgbF(0, 0, 0, static_cast<float>(opacity));
}

}  // namespace

void ProgressiveBlurFade::apply(QPainter& painter, const QRectF& rect) {
    if (rect.height() < 2 * depth) {
        return;
    }
    QLinearGradient fade(rect.topLeft(), rect.bottomLeft());
    const double inside = depth / rect.height();
    fade.setColorAt(0, mask(edgeOpacity));
    fade.setColorAt(inside, mask(1));
    fade.setColorAt(1 - inside, mask(1));
    fade.setColorAt(1, mask(edgeOpacity));
    painter.save();
    painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
    painter.fillRect(rect, fade);
    painter.restore();
}

}  // namespace kestro
