#pragma once

#include <QColor>
#include <QRectF>

class QPainter;

namespace kestro {

/// Device pixels per point of the painter's device.
double deviceScale(const QPainter& painter);

/// `rect` (in the painter's coordinates) with every edge on a whole device pixel, and at least one pixel thick.
QRectF snappedToDevice(const QPainter& painter, const QRectF& rect);

/// The width of a hairline in points: half a point, but exactly one device pixel below scale 2.
double hairlineWidth(double scale);

/// Paints the outline shared by cards and chips. It is inside `rect`, whose edges are snapped to device pixels.
void kestroHairlineBorder(QPainter& painter, const QRectF& rect, double radius = 6);

/// The same outline in another colour.
void kestroHairlineBorder(QPainter& painter, const QRectF& rect, double radius, const QColor& color);

/// Paints a horizontal hairline with its top at `y`, from `left` to `right`, in the hairline colour.
void paintHairline(QPainter& painter, double left, double right, double y);

}  // namespace kestro
