#include "ui/widgets/sparkline_view.h"

#include "ui/paint/hairline.h"
#include "ui/paint/line_chart.h"
#include "ui/paint/text_painter.h"
#include "ui/paint/zoom.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace kestro {

namespace {

constexpr double lowestTop = 1;
constexpr double lineWidth = 1.5;
constexpr double areaTopOpacity = 0.18;
constexpr double areaBottomOpacity = 0.01;

constexpr double topTextGap = 1;
const TextStyle topTextStyle{8, 12, QFont::Medium, 0, KestroTheme::textTertiary};

double largest(std::span<const double> values) {
    double found = 0;
    for (const double value : values) {
        found = std::max(found, std::isfinite(value) ? value : 0);
    }
    return found;
}

}  // namespace

double sparklineTop(std::span<const double> values, std::optional<double> maxLimit) {
    return maxLimit.value_or(std::max(largest(values), lowestTop));
}

QPolygonF sparklinePoints(std::span<const double> values, double top, const QRectF& area) {
    QPolygonF points;
    const auto count = static_cast<qsizetype>(values.size());
    if (count < 2) {
        return points;
    }
    points.reserve(count);
    for (qsizetype i = 0; i < count; ++i) {
        const double value = values[static_cast<size_t>(i)];
        const double clamped = std::isnan(value) ? 0 : std::max(std::min(value, top), 0.0);
        const double share = top > 0 ? clamped / top : 0;
        const double x = area.left() + area.width() * static_cast<double>(i) / static_cast<double>(count - 1);
        points.append({x, area.bottom() - area.height() * share});
    }
    return points;
}

SparklineView::SparklineView(const Ink& tintColor, std::optional<double> maxLimit, QWidget* parent)
    : View(parent), tintColor_(tintColor), maxLimit_(maxLimit) {}

void SparklineView::setData(const std::vector<double>& history) {
    if (history != data_) {
        data_ = history;
        update();
    }
}

void SparklineView::setSpoken(const QString& name, std::function<QString(double)> format, const QString& unit) {
    name_ = name;
    format_ = std::move(format);
    unit_ = unit;
}

void SparklineView::setTopText(std::function<QString(double)> text) {
    topText_ = std::move(text);
}

void SparklineView::showTop(bool isShown) {
    if (isShown != isTopShown_) {
        isTopShown_ = isShown;
        update();
    }
}

AccessibleInfo SparklineView::accessibleInfo() const {
    AccessibleInfo info = View::accessibleInfo();
    info.role = QAccessible::Chart;
    if (format_ && !data_.empty()) {
        info.name = QStringLiteral("%1 history, now %2%3, highest %4")
                        .arg(name_, format_(data_.back()), unit_, format_(largest(data_)));
    }
    return info;
}

void SparklineView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    paintInDesignPoints(painter, *this);
    const QRectF area = designRect(*this).adjusted(lineBleed, lineBleed, -lineBleed, -lineBleed);
    for (const double share : {0.0, 0.5, 1.0}) {
        paintHairline(painter, area.left(), area.right(), area.top() + area.height() * share);
    }
    const double top = sparklineTop(data_, maxLimit_);
    if (isTopShown_ && topText_) {
        const QRectF line(area.topLeft() + QPointF(0, topTextGap), QSizeF(area.width(), topTextStyle.lineHeight));
        drawText(painter, line, topText_(top), topTextStyle);
    }
    const QPolygonF points = sparklinePoints(data_, top, area);
    if (points.isEmpty()) {
        return;
    }
    paintLineChart(painter, {.line = points,
                             .area = area,
                             .color = tintColor_.color(),
                             .lineWidth = lineWidth,
                             .topOpacity = areaTopOpacity,
                             .bottomOpacity = areaBottomOpacity});
}

}  // namespace kestro
