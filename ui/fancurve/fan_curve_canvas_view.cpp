#include "ui/fancurve/fan_curve_canvas_view.h"

#include "core/base/text.h"
#include "ui/format/figure_text.h"
#include "ui/format/unmeasured.h"
#include "ui/paint/hairline.h"
#include "ui/paint/text_painter.h"
#include "ui/symbols/symbol_painter.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>

#include <fmt/format.h>

#include <cmath>

namespace kestro {

namespace {

constexpr double symbolSize = 12;
constexpr double targetGap = 6;
constexpr double curveWidth = 2;
constexpr double miterLimit = 10;
constexpr double anchorDiameter = 9;
constexpr double pointStroke = 1.5;
constexpr double liveDisc = 18;
constexpr double liveDiameter = 8;
constexpr double labelSize = 9;

const TextStyle& gridStyle() {
    static const TextStyle style{labelSize, 10, text_styles::w600, 0, KestroTheme::textTertiary};
    return style;
}

const TextStyle& anchorStyle() {
    static const TextStyle style{9.5, 12, text_styles::w600, 0, KestroTheme::textPrimary};
    return style;
}

QPen curvePen(const QColor& color) {
    QPen pen(color, curveWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
    pen.setMiterLimit(miterLimit);
    return pen;
}

QString degrees(double temperature) {
    return wholeText(temperature) + QString::fromUtf8("°");
}

}  // namespace

QString FanCurveReading::liveText() const {
    // A nonsensical sensor value must not break the line.
    const double shown = std::isfinite(currentTemp) ? currentTemp : 0;
    return QString::fromStdString(fmt::format("Live: {:.1f}°C · {} RPM", shown, wholeNumber(currentRPM)));
}

QString FanCurveReading::targetText() const {
    return QString::fromStdString(fmt::format("(Target: {} RPM)", wholeNumber(targetRPM)));
}

QString FanCurveReading::lowLabel() const {
    return QStringLiteral("T_low (") + degrees(config.lowTemp) + QLatin1Char(')');
}

QString FanCurveReading::highLabel() const {
    return QStringLiteral("T_max (") + degrees(config.highTemp) + QLatin1Char(')');
}

FanCurveCanvasView::FanCurveCanvasView(QWidget* parent) : View(parent) {
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void FanCurveCanvasView::setReading(const FanCurveReading& reading) {
    if (reading != reading_) {
        reading_ = reading;
        setHelp(reading.isMeasured ? QString() : unmeasuredHelp());
        update();
    }
}

QSize FanCurveCanvasView::sizeHint() const {
    return {400, headerHeight + canvasHeight};
}

AccessibleInfo FanCurveCanvasView::accessibleInfo() const {
    AccessibleInfo info = View::accessibleInfo();
    info.role = QAccessible::Chart;
    info.name = QStringLiteral("Response curve, ") + reading_.fanName;
    info.description = reading_.liveText() + QLatin1Char(' ') + reading_.targetText() + QStringLiteral(", ") +
                       reading_.lowLabel() + QStringLiteral(", ") + reading_.highLabel();
    if (!reading_.isMeasured) {
        info.description += QStringLiteral(". ") + unmeasuredHelp();
    }
    return info;
}

void FanCurveCanvasView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    paintHeader(painter);
    painter.translate(0, headerHeight);
    const FanCurvePlot plot{QSizeF(width(), height() - headerHeight), reading_.minDisplayTemp,
                            reading_.maxDisplayTemp, reading_.maxDisplayRPM};
    paintBands(painter, plot);
    paintGrid(painter, plot);
    paintCurve(painter, plot);
    paintLivePoint(painter, plot);
    paintAnchors(painter, plot);
}

void FanCurveCanvasView::paintHeader(QPainter& painter) const {
    const TextStyle title{10, headerHeight, text_styles::w700, 0.9, KestroTheme::textPrimary};
    const TextStyle live{11, headerHeight, text_styles::w600, 0,
                         figureInk(KestroTheme::textPrimary, reading_.isMeasured)};
    const TextStyle target{11, headerHeight, text_styles::w500, 0,
                           figureInk(KestroTheme::textSecondary, reading_.isMeasured)};
    const QRectF line(0, 0, width(), headerHeight);
    SymbolPainter::paint(painter, QStringLiteral("waveform.path.ecg"),
                         QRectF(0, (headerHeight - symbolSize) / 2, symbolSize, symbolSize),
                         reading_.accentColor.color());
    drawText(painter, line.adjusted(symbolSize, 0, 0, 0), QStringLiteral(" RESPONSE SPLINE"), title);
    const double targetWidth = std::ceil(textWidth(reading_.targetText(), target));
    drawText(painter, line, reading_.targetText(), target, Qt::AlignRight, TextFit::value);
    drawText(painter, line.adjusted(0, 0, -targetWidth - targetGap, 0), reading_.liveText(), live, Qt::AlignRight,
             TextFit::value);
}

void FanCurveCanvasView::paintBands(QPainter& painter, const FanCurvePlot& plot) const {
    const QRectF area = plot.area();
    painter.fillRect(plot.quietBand() & area, Ink(KestroTheme::accentNominal).faded(0.04).color());
    painter.fillRect(plot.loudBand() & area, Ink(KestroTheme::accentCritical).faded(0.03).color());
}

void FanCurveCanvasView::paintGrid(QPainter& painter, const FanCurvePlot& plot) const {
    constexpr double labelGap = 8;
    constexpr double labelLift = 5;
    constexpr double degreeLeft = 10;
    constexpr double degreeDrop = 5;
    const QRectF area = plot.area();
    const double width = hairlineWidth(deviceScale(painter));
    QPen pen(KestroTheme::hairline(), width);
    pen.setDashPattern({2 / width, 3 / width});
    pen.setCapStyle(Qt::FlatCap);
    for (const double rpm : plot.rpmGrid()) {
        const double y = plot.y(rpm);
        painter.setPen(pen);
        painter.drawLine(QLineF(area.left(), y, area.right(), y));
        const QRectF label(0, y - labelLift, area.left() - labelGap, gridStyle().lineHeight);
        drawText(painter, label, rpmGridLabel(rpm), gridStyle(), Qt::AlignRight);
    }
    for (const double temperature : plot.temperatureGrid()) {
        const double x = plot.x(temperature);
        painter.setPen(pen);
        painter.drawLine(QLineF(x, area.top(), x, area.bottom()));
        const QRectF label(x - degreeLeft, area.bottom() + degreeDrop, 2 * degreeLeft, gridStyle().lineHeight);
        drawText(painter, label, degrees(temperature), gridStyle());
    }
}

void FanCurveCanvasView::paintCurve(QPainter& painter, const FanCurvePlot& plot) const {
    const QRectF area = plot.area();
    QPainterPath line;
    const std::vector<QPointF> points = plot.curve(reading_.config);
    line.moveTo(plot.clamped(points.front()));
    for (const QPointF& point : points) {
        line.lineTo(plot.clamped(point));
    }
    QPainterPath below = line;
    below.lineTo(area.bottomRight());
    below.lineTo(area.bottomLeft());
    below.closeSubpath();
    QLinearGradient fill(area.topLeft(), area.bottomLeft());
    fill.setColorAt(0, reading_.accentColor.faded(0.14).color());
    fill.setColorAt(1, reading_.accentColor.faded(0.01).color());
    painter.fillPath(below, fill);
    painter.strokePath(line, curvePen(reading_.accentColor.color()));
}

void FanCurveCanvasView::paintAnchors(QPainter& painter, const FanCurvePlot& plot) const {
    constexpr double half = liveDisc / 2;
    const QPointF live = plot.clamped(plot.point(reading_.currentTemp, reading_.currentRPM));
    const QRectF liveArea(live - QPointF(half, half), QSizeF(liveDisc, liveDisc));
    const auto paintAnchor = [&](double temperature, const QString& label, double left, double above) {
        const double rpm = reading_.config.evaluateRPM(temperature);
        const QPointF anchor = plot.clamped(plot.point(temperature, rpm));
        painter.setPen(QPen(Qt::white, pointStroke));
        painter.setBrush(KestroTheme::ground());
        painter.drawEllipse(anchor, anchorDiameter / 2, anchorDiameter / 2);
        const ShapedText& shaped = shapeText(label, anchorStyle());
        const double lineHeight = anchorStyle().lineHeight;
        const AnchorText text{QSizeF(std::ceil(shaped.width), lineHeight),
                              baselineOffset(lineHeight, shaped.ascent, shaped.descent), left, above};
        const AnchorLabel place = anchorLabel(plot.area(), anchor, text, liveArea);
        drawText(painter, place.area, label, anchorStyle(), place.alignment);
    };
    paintAnchor(reading_.config.lowTemp, reading_.lowLabel(), 8, 8);
    paintAnchor(reading_.config.highTemp, reading_.highLabel(), 9, 5);
}

void FanCurveCanvasView::paintLivePoint(QPainter& painter, const FanCurvePlot& plot) const {
    constexpr double hairWidth = 0.75;
    const QRectF area = plot.area();
    const QPointF live = plot.clamped(plot.point(reading_.currentTemp, reading_.currentRPM));
    const Ink ink =
        reading_.isMeasured ? Ink(KestroTheme::accentNominal) : figureInk(KestroTheme::textSecondary, false);
    painter.setPen(QPen(ink.faded(0.35).color(), hairWidth));
    painter.drawLine(QLineF(live.x(), area.top(), live.x(), area.bottom()));
    painter.drawLine(QLineF(area.left(), live.y(), live.x(), live.y()));
    painter.setPen(Qt::NoPen);
    painter.setBrush(ink.faded(0.25).color());
    painter.save();
    // At the edge of the plot the disc would cover the labels of the grid.
    painter.setClipRect(area);
    painter.drawEllipse(live, liveDisc / 2, liveDisc / 2);
    painter.restore();
    painter.setPen(QPen(figureInk(QColor(Qt::white), reading_.isMeasured).color(), pointStroke));
    painter.setBrush(ink.color());
    painter.drawEllipse(live, liveDiameter / 2, liveDiameter / 2);
}

}  // namespace kestro
