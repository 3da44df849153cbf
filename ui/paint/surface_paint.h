#pragma once

#include <QRectF>

class QColor;
class QPainter;

namespace kestro {

/// Fills a rounded rectangle.
void paintRounded(QPainter& painter, const QRectF& rect, double radius, const QColor& fill);

/// Outlines a rounded rectangle with a line of `width` inside it.
void paintOutline(QPainter& painter, const QRectF& rect, double radius, const QColor& color, double width);

/// A vertical hairline with its left edge at `x`.
void paintVerticalHairline(QPainter& painter, double x, double top, double bottom);

/// The background of menus: opaque enough to stay readable over anything, lit from above, with the rim on top.
void paintPopupGlass(QPainter& painter, const QRectF& rect, double radius);

/// The background of tooltips: equally opaque, but flat and the darkest of the glasses.
void paintHudGlass(QPainter& painter, const QRectF& rect, double radius);

/// A track with a filled part of `fraction` (clamped to 0..1), both with round ends, on whole device pixels.
void paintBar(QPainter& painter, const QRectF& area, double fraction, const QColor& trackColor,
              const QColor& fill);

}  // namespace kestro
