#pragma once

#include <QRectF>

class QColor;
class QImage;
class QPainter;
class QPen;
class QPoint;

// Shapes of any height, painted in parts. Qt divides a fill of 96 or more spans among the threads of a pool, which
// wakes the processor more often than the work is worth.

namespace kestro {

/// Fewer than Qt divides.
inline constexpr int mostSpans = 90;

/// Draws an image of device pixels, without resampling, with its corner at `corner` in device pixels.
void drawPixels(QPainter& painter, const QPoint& corner, const QImage& image);

/// Fills a rectangle whose edges are on whole device pixels.
void fillInBands(QPainter& painter, const QRectF& area, const QColor& color);

/// Fills a rounded rectangle whose edges are on whole device pixels.
void fillTallRounded(QPainter& painter, const QRectF& area, double radius, const QColor& color);

/// Outlines such a rounded rectangle with a line inside it that is whole device pixels wide.
void outlineTallRounded(QPainter& painter, const QRectF& area, double radius, const QPen& pen);

}  // namespace kestro
