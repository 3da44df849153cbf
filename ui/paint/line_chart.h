#pragma once

#include <QColor>
#include <QPolygonF>
#include <QRectF>

class QPainter;

namespace kestro {

/// A line with round joins and ends, and the fading area below it. Lengths in the painter's points.
struct LineChart {
    QPolygonF line;  ///< finite points within `area`, each to the right of the one before
    QRectF area;
    QColor color;
    double lineWidth = 0;
    double topOpacity = 0;  ///< of the area under the line, at the top of `area`; a factor of the colour's own
    double bottomOpacity = 0;
};

/// Paints a chart, if its area is not empty, pixel by pixel: several times faster than Qt strokes and fills its
/// paths.
void paintLineChart(QPainter& painter, const LineChart& chart);

}  // namespace kestro
