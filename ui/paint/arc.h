#pragma once

#include <QImage>
#include <QPointF>
#include <QRectF>

class QColor;
class QPainter;

namespace kestro {

/// An arc of a circle with round ends. Lengths in the painter's points or in pixels; angles in degrees clockwise
/// from three o'clock.
struct Arc {
    QPointF centre;
    double radius = 0;  ///< to the middle of the line
    double width = 0;
    double from = 0;
    double to = 0;  ///< at most a turn after `from`
};

/// The opacity (0..1) of the arc in the pixel with that centre: how much of it the arc covers. Lengths in pixels.
double arcCoverage(const Arc& arc, const QPointF& pixel);

/// Paints an arc, pixel by pixel: Qt divides a stroke of a gauge's size among the threads of a pool, which wakes
/// the processor far more often than the work is worth.
void paintArc(QPainter& painter, const Arc& arc, const QColor& color);

}  // namespace kestro
