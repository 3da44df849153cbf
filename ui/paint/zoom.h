#pragma once

#include <QRect>
#include <QRectF>

class QPainter;
class QWidget;

namespace kestro {

/// A widget that shows itself and its content enlarged. Inside it everything is laid out and painted in design
/// points: points before the enlargement.
class ZoomedView {
public:
    virtual ~ZoomedView() = default;

    /// Points per design point, at least 1.
    virtual double zoom() const = 0;
};

/// The enlargement of `widget`: the product of the zooms of itself and its ancestors.
double zoomOf(const QWidget& widget);

/// The area of `widget` itself, in design points.
QRectF designRect(const QWidget& widget);

/// `area` in whole points, with each edge rounded by itself, so that adjacent areas stay adjacent.
QRect wholePoints(const QRectF& area);

/// A design area as an area of `zoom` points per design point.
QRectF zoomed(const QRectF& area, double zoom);

/// The points of `widget` that a design area touches.
QRect touchedPoints(const QWidget& widget, const QRectF& area);

/// Sets up `painter`, which paints on `widget`, to accept design points.
void paintInDesignPoints(QPainter& painter, const QWidget& widget);

}  // namespace kestro
