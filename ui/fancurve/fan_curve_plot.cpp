#include "ui/fancurve/fan_curve_plot.h"

#include "ui/format/figure_text.h"

#include <algorithm>
#include <cmath>

namespace kestro {

namespace {

constexpr double padLeft = 45;
constexpr double padTop = 16;
constexpr double padRight = 20;
constexpr double padBottom = 24;
constexpr int curveSegments = 60;
constexpr double quietRPM = 2500;
constexpr double loudRPM = 3000;

/// Faster than any fan; limits the number of grid lines for any stored value.
constexpr double highestAxis = 100'000;

double share(double value, double start, double end) {
    return end > start ? (value - start) / (end - start) : 0;
}

}  // namespace

QRectF FanCurvePlot::area() const {
    return {padLeft, padTop, std::max(0.0, size.width() - padLeft - padRight),
            std::max(0.0, size.height() - padTop - padBottom)};
}

double FanCurvePlot::x(double temperature) const {
    return padLeft + area().width() * share(temperature, minDisplayTemp, maxDisplayTemp);
}

double FanCurvePlot::y(double rpm) const {
    return padTop + area().height() * (1 - share(rpm, 0, maxDisplayRPM));
}

QPointF FanCurvePlot::clamped(const QPointF& point) const {
    const QRectF plot = area();
    // NaN fails every comparison and falls through to the start of the axis.
    const auto kept = [](double value, double low, double high, double start) {
        return value >= low && value <= high ? value : value < low ? low : value > high ? high : start;
    };
    return {kept(point.x(), plot.left(), plot.right(), plot.left()),
            kept(point.y(), plot.top(), plot.bottom(), plot.bottom())};
}

std::vector<QPointF> FanCurvePlot::curve(const FanCurveConfig& config) const {
    std::vector<QPointF> points;
    points.reserve(curveSegments + 1);
    for (int i = 0; i <= curveSegments; ++i) {
        const double temperature = minDisplayTemp + (maxDisplayTemp - minDisplayTemp) * i / curveSegments;
        points.push_back(point(temperature, config.evaluateRPM(temperature)));
    }
    return points;
}

QRectF FanCurvePlot::quietBand() const {
    const QRectF plot = area();
    const double height = plot.height() * share(quietRPM, 0, maxDisplayRPM);
    return {plot.left(), plot.bottom() - height, plot.width(), height};
}

QRectF FanCurvePlot::loudBand() const {
    const QRectF plot = area();
    return {plot.left(), plot.top(), plot.width(), plot.height() * share(loudRPM, 0, maxDisplayRPM)};
}

std::vector<double> FanCurvePlot::temperatureGrid() const {
    constexpr double step = 10;
    std::vector<double> grid;
    for (double value = (std::floor(minDisplayTemp / step) + 1) * step; value < maxDisplayTemp; value += step) {
        grid.push_back(value);
    }
    return grid;
}

std::vector<double> FanCurvePlot::rpmGrid() const {
    constexpr double lowAxis = 4000;
    constexpr double middleAxis = 12000;
    const double step = maxDisplayRPM <= lowAxis ? 1000 : maxDisplayRPM <= middleAxis ? 2000 : 5000;
    std::vector<double> grid{0};
    if (maxDisplayRPM <= lowAxis) {
        grid.push_back(500);
    }
    for (double value = step; value <= maxDisplayRPM; value += step) {
        grid.push_back(value);
    }
    return grid;
}

double maxDisplayRPM(double fanMaximumRPM) {
    constexpr double fine = 1000;
    constexpr double coarse = 2000;
    constexpr double coarseFrom = 4000;
    if (!(fanMaximumRPM > fine)) {
        return fine;
    }
    const double step = fanMaximumRPM < coarseFrom ? fine : coarse;
    return std::min(highestAxis, std::ceil(fanMaximumRPM / step) * step);
}

QString rpmGridLabel(double rpm) {
    constexpr double thousand = 1000;
    return rpm >= thousand ? wholeText(rpm / thousand) + QLatin1Char('k') : wholeText(rpm);
}

AnchorLabel anchorLabel(const QRectF& plot, const QPointF& anchor, const AnchorText& text, const QRectF& live) {
    constexpr double drop = 6;
    const double top = anchor.y() - text.above - text.baseline;
    const QRectF before(QPointF(anchor.x() - text.left - text.size.width(), top), text.size);
    const QRectF after(QPointF(anchor.x() + text.left, top), text.size);
    if (before.left() < plot.left()) {
        return {after, Qt::AlignLeft};
    }
    if (before.intersects(live)) {
        // The curve only rises to the right, so there is room below it.
        const QRectF below = after.translated(0, anchor.y() + drop - top);
        if (plot.contains(below) && !below.intersects(live)) {
            return {below, Qt::AlignLeft};
        }
    }
    return {before, Qt::AlignRight};
}

}  // namespace kestro
