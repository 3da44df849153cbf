#pragma once

#include <QColor>
#include <QRectF>

class QPainter;

namespace kestro {

/// Device pixels per unit of the painter's coordinates.
double deviceScale(const QPainter& painter);

/// `rect` (in the painter's coordinates) with every edge on a whole device pixel, and at least one pixel thick.
QRectF snappedToDevice(const QPainter& painter, const QRectF& rect);

/// A length rounded to whole device pixels, at least one.
double snappedLength(double length, double scale);

/// A bar or rule in the painter's coordinates, with its sides and its top on whole device pixels. Its height is
/// rounded by itself, to at least one device pixel, so that equal bars are equally high wherever they are.
QRectF snappedBar(const QPainter& painter, const QRectF& bar);

/// The width of a hairline in points: half a point, rounded to whole device pixels, at least one.
double hairlineWidth(double scale);

/// Paints the outline shared by cards and chips. It is inside `rect`, whose edges are snapped to device pixels.
void kestroHairlineBorder(QPainter& painter, const QRectF& rect, double radius = 6);

/// The same outline in another colour.
void kestroHairlineBorder(QPainter& painter, const QRectF& rect, double radius, const QColor& color);

/// Paints a horizontal hairline with its top at `y`, from `left` to `right`, in the hairline colour.
void paintHairline(QPainter& painter, double left, double right, double y);

}  // namespace kestro
