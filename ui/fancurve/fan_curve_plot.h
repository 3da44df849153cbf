#pragma once

#include "core/model/fan_curve.h"

#include <QPointF>
#include <QRectF>
#include <QSizeF>
#include <QString>

#include <vector>

namespace kestro {

/// The pure geometry of a fan curve's chart on a canvas of a given size. Lengths in points, y downward,
/// temperatures in degrees Celsius, speeds in revolutions per minute from 0 at the bottom.
struct FanCurvePlot {
    QSizeF size;
    double minDisplayTemp = 30;
    double maxDisplayTemp = 100;
    double maxDisplayRPM = 8000;

    /// The area enclosed by the axes.
    QRectF area() const;

    /// The position of a temperature or speed; outside the plot for values beyond the axes. An axis with an empty
    /// range maps everything to its start.
    double x(double temperature) const;
    double y(double rpm) const;
    QPointF point(double temperature, double rpm) const { return {x(temperature), y(rpm)}; }

    /// The nearest point of the plot.
    QPointF clamped(const QPointF& point) const;

    /// The curve as 61 points, evenly spaced from the left end to the right.
    std::vector<QPointF> curve(const FanCurveConfig& config) const;

    /// The quiet zone at the bottom of the plot, 2500 RPM high, and the loud zone at its top, 3000 RPM high.
    /// Either may be taller than the plot and is clipped when painted.
    QRectF quietBand() const;
    QRectF loudBand() const;

    std::vector<double> temperatureGrid() const;
    std::vector<double> rpmGrid() const;
};

/// The top of the vertical axis for a fan: its maximum rounded up to a multiple of 1000, or of 2000 above 4000.
double maxDisplayRPM(double fanMaximumRPM);

/// "3k" from 1000, else the whole number.
QString rpmGridLabel(double rpm);

/// The text beside an anchor: its size, the baseline's distance from its top, and the baseline's distances to the
/// left of and above the anchor.
struct AnchorText {
    QSizeF size;
    double baseline = 0;
    double left = 0;
    double above = 0;
};

/// The position of a label beside its anchor.
struct AnchorLabel {
    QRectF area;
    Qt::Alignment alignment;
};

/// Places a label at the left of its anchor; at the right if it would leave the plot; at the right below the
/// anchor if it would cover the `live` point.
AnchorLabel anchorLabel(const QRectF& plot, const QPointF& anchor, const AnchorText& text, const QRectF& live);

}  // namespace kestro
