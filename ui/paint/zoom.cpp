#include "ui/paint/zoom.h"

#include <QPainter>
#include <QWidget>

namespace kestro {

double zoomOf(const QWidget& widget) {
    double zoom = 1;
    for (const QWidget* one = &widget; one; one = one->isWindow() ? nullptr : one->parentWidget()) {
        if (const auto* view = dynamic_cast<const ZoomedView*>(one)) {
            zoom *= view->zoom();
        }
    }
    return zoom;
}

QRectF designRect(const QWidget& widget) {
    return {QPointF(), QSizeF(widget.size()) / zoomOf(widget)};
}

QRect wholePoints(const QRectF& area) {
    const QPoint topLeft(qRound(area.left()), qRound(area.top()));
    return {topLeft, QSize(qRound(area.right()) - topLeft.x(), qRound(area.bottom()) - topLeft.y())};
}

QRectF zoomed(const QRectF& area, double zoom) {
    return {area.topLeft() * zoom, area.size() * zoom};
}

QRect touchedPoints(const QWidget& widget, const QRectF& area) {
    return zoomed(area, zoomOf(widget)).toAlignedRect();
}

void paintInDesignPoints(QPainter& painter, const QWidget& widget) {
    const double zoom = zoomOf(widget);
    if (zoom != 1) {
        painter.scale(zoom, zoom);
    }
}

}  // namespace kestro
