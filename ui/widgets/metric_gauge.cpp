#include "ui/widgets/metric_gauge.h"

#include "core/base/text.h"
#include "ui/format/figure_text.h"
#include "ui/format/unmeasured.h"
#include "ui/paint/arc.h"
#include "ui/paint/text_painter.h"
#include "ui/paint/zoom.h"
#include "ui/widgets/visible_change.h"

#include <QPaintEvent>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace kestro {

namespace {

constexpr double arcStart = 0.15;
constexpr double arcSpan = 0.7;
constexpr double quarterTurn = 90;
constexpr double trackOpacity = 0.14;
constexpr double unitGap = 2;
constexpr double smallestScale = 0.8;

constexpr GaugeMetrics full{82, 8, 16, 9, 11, 9, 73, 14, 12};
constexpr GaugeMetrics compact{64, 6, 14, 8, 10, 8, 57, 13, 11};

TextStyle valueStyle(bool isCompact, double scale) {
    return {gaugeMetrics(isCompact).valueSize * scale, 20, QFont::DemiBold, 0, KestroTheme::textPrimary};
}

TextStyle unitStyle(bool isCompact, double scale) {
    return {gaugeMetrics(isCompact).unitSize * scale, 20, QFont::Medium, 0, KestroTheme::textSecondary};
}

}  // namespace

double gaugeArcEnd(double value, double minVal, double max) {
    if (!(max > minVal)) {
        return arcStart;
    }
    const double fraction = (value - minVal) / (max - minVal);
    if (fraction >= 1) {
        return arcStart + arcSpan;
    }
    return arcStart + arcSpan * (fraction > 0 ? fraction : 0);
}

double gaugeAngle(double position) {
    return quarterTurn + 360 * position;
}

const GaugeMetrics& gaugeMetrics(bool isCompact) {
    return isCompact ? compact : full;
}

MetricGauge::MetricGauge(bool isCompact, QWidget* parent) : View(parent), isCompact_(isCompact) {}

void MetricGauge::setContent(const GaugeContent& content) {
    const double end = arcEnd(content);
    const double pixels = zoomOf(*this) * devicePixelRatioF();
    const double circumference = std::numbers::pi * gaugeMetrics(isCompact_).frame * pixels;
    const bool isArcMoved =
        std::abs(end - drawnEnd_) * circumference >= visiblePixels || (end > arcStart) != (drawnEnd_ > arcStart);
    const bool isRingChanged = isArcMoved || wholeNumber(content.value) != wholeNumber(content_.value) ||
                               content.unit != content_.unit || content.tintColor != content_.tintColor;
    const bool isMeasuredChanged = content.isMeasured != content_.isMeasured;
    const bool isHelpChanged = isMeasuredChanged || content.help != content_.help;
    const bool areCaptionsChanged = content.title != content_.title || content.subtitle != content_.subtitle;
    content_ = content;
    if (isHelpChanged) {
        setHelp(content.isMeasured ? content.help : unmeasuredHelp());
    }
    if (isRingChanged || isMeasuredChanged) {
        drawnEnd_ = end;
        update(touchedPoints(*this, frame()));
    }
    if (areCaptionsChanged) {
        QRectF captions = designRect(*this);
        captions.setTop(gaugeMetrics(isCompact_).titleTop);
        update(touchedPoints(*this, captions));
    }
}

void MetricGauge::setCompact(bool isCompact) {
    if (isCompact != isCompact_) {
        isCompact_ = isCompact;
        updateGeometry();
        update();
    }
}

void MetricGauge::setGrowth(double growth) {
    if (growth != growth_) {
        growth_ = growth;
        update();
    }
}

double MetricGauge::fittingTextScale() const {
    const double width = figureWidth(shownUnit());
    return std::clamp(gaugeMetrics(isCompact_).innerWidth() / width, smallestScale, 1.0);
}

QString MetricGauge::shownUnit() const {
    const GaugeMetrics& metrics = gaugeMetrics(isCompact_);
    const bool touchesRing = figureWidth(content_.unit) * smallestScale > metrics.frame - 2 * metrics.lineWidth;
    return touchesRing ? QString() : content_.unit;
}

double MetricGauge::figureWidth(const QString& unit) const {
    const double value = textWidth(wholeText(content_.value), valueStyle(isCompact_, 1));
    return unit.isEmpty() ? value : value + unitGap + textWidth(unit, unitStyle(isCompact_, 1));
}

void MetricGauge::setTextScale(double scale) {
    if (scale != textScale_) {
        textScale_ = scale;
        update(touchedPoints(*this, frame()));
    }
}

QSize MetricGauge::sizeHint() const {
    const GaugeMetrics& metrics = gaugeMetrics(isCompact_);
    return {static_cast<int>(metrics.frame), static_cast<int>(metrics.height())};
}

AccessibleInfo MetricGauge::accessibleInfo() const {
    AccessibleInfo info = View::accessibleInfo();
    const QString value = wholeText(content_.value);
    const bool isPercent = content_.unit == QStringLiteral("%");
    info.name = QStringLiteral("%1, %2 %3")
                    .arg(content_.title, value, isPercent ? QStringLiteral("percent") : content_.unit);
    if (!isPercent && content_.max > content_.minVal) {
        info.name += QStringLiteral(" of ") + wholeText(content_.max);
    }
    if (!content_.subtitle.isEmpty() && !content_.subtitle.startsWith(QStringLiteral("of "))) {
        info.name += QStringLiteral(", ") + content_.subtitle;
    }
    return info;
}

void MetricGauge::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    paintInDesignPoints(painter, *this);
    if (event->rect().intersects(touchedPoints(*this, frame()))) {
        paintRing(painter);
        paintFigure(painter);
    }
    paintCaptions(painter);
}

QRectF MetricGauge::frame() const {
    const double edge = gaugeMetrics(isCompact_).frame;
    return {(designRect(*this).width() - edge) / 2, 0, edge, edge};
}

double MetricGauge::arcEnd(const GaugeContent& content) const {
    return content.isMeasured ? gaugeArcEnd(content.value, content.minVal, content.max) : arcStart;
}

void MetricGauge::paintRing(QPainter& painter) const {
    const double lineWidth = gaugeMetrics(isCompact_).lineWidth;
    Arc arc{frame().center(), (frame().width() - lineWidth) / 2, lineWidth, gaugeAngle(arcStart),
            gaugeAngle(arcStart + arcSpan)};
    paintArc(painter, arc, Ink::white(trackOpacity).color());
    if (const double end = arcEnd(content_); end > arcStart) {
        arc.to = gaugeAngle(end);
        paintArc(painter, arc, content_.tintColor.color());
    }
}

void MetricGauge::paintFigure(QPainter& painter) const {
    const QString figure = wholeText(content_.value);
    const QString unitText = shownUnit();
    TextStyle value = valueStyle(isCompact_, textScale_);
    value.ink = figureInk(value.ink, content_.isMeasured);
    TextStyle unit = unitStyle(isCompact_, textScale_);
    unit.ink = figureInk(unit.ink, content_.isMeasured);
    const double valueWidth = textWidth(figure, value);
    const double unitWidth = textWidth(unitText, unit);
    const double total = unitText.isEmpty() ? valueWidth : valueWidth + unitGap + unitWidth;
    const QPointF centre = frame().center();
    const QRectF line(centre.x() - total / 2, centre.y() - value.lineHeight / 2, valueWidth + 1, value.lineHeight);
    drawText(painter, line, figure, value, Qt::AlignLeft, TextFit::value);
    // On the figure's baseline: its box is lowered by the difference of the centred baselines.
    const ShapedText figureShape = shapeText(figure, value);
    const ShapedText unitShape = shapeText(unitText, unit);
    const double drop = baselineOffset(value.lineHeight, figureShape.ascent, figureShape.descent) -
                        baselineOffset(unit.lineHeight, unitShape.ascent, unitShape.descent);
    drawText(painter,
             QRectF(line.left() + valueWidth + unitGap, line.top() + drop, unitWidth + 1, unit.lineHeight),
             unitText, unit, Qt::AlignLeft, TextFit::value);
}

void MetricGauge::paintCaptions(QPainter& painter) const {
    const GaugeMetrics& metrics = gaugeMetrics(isCompact_);
    const TextStyle title{metrics.titleSize, metrics.titleHeight, QFont::Medium, 0, KestroTheme::textPrimary};
    const TextStyle subtitle{metrics.subtitleSize, metrics.subtitleHeight, QFont::Medium, 0,
                             KestroTheme::textSecondary};
    const double width = designRect(*this).width();
    const QRectF titleLine(0, metrics.titleTop, width, metrics.titleHeight);
    drawText(painter, titleLine, content_.title, title, Qt::AlignHCenter);
    const QRectF subtitleLine(0, titleLine.bottom(), width, metrics.subtitleHeight);
    drawText(painter, subtitleLine, content_.subtitle, subtitle, Qt::AlignHCenter);
}

}  // namespace kestro
