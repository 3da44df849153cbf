#include "ui/paint/line_chart.h"

#include "ui/paint/hairline.h"
#include "ui/paint/tall_shapes.h"

#include <QImage>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

namespace kestro {

namespace {

/// How much of each pixel a line covers: 255 for all of it. The line is relative to the corner of the pixels.
class LineCoverage {
public:
    LineCoverage(const QPolygonF& line, double width, QSize size)
        : size_(size),
          halfWidth_(width / 2),
          values_(static_cast<std::size_t>(size.width()) * static_cast<std::size_t>(size.height())) {
        for (qsizetype i = 1; i < line.size(); ++i) {
            addSegment(line[i - 1], line[i]);
        }
    }

    const unsigned char* row(int y) const {
        return values_.data() + static_cast<std::ptrdiff_t>(y) * size_.width();
    }

private:
    void addSegment(const QPointF& from, const QPointF& to) {
        const double reach = halfWidth_ + 1;
        const double slope = to.x() > from.x() ? (to.y() - from.y()) / (to.x() - from.x()) : 0;
        const int end = std::min(static_cast<int>(std::ceil(to.x() + reach)), size_.width());
        for (int x = std::max(0, static_cast<int>(std::floor(from.x() - reach))); x < end; ++x) {
            // Only the part of the segment near this column can cover its pixels.
            const double first = from.y() + slope * (std::clamp(x + 0.5 - reach, from.x(), to.x()) - from.x());
            const double last = from.y() + slope * (std::clamp(x + 0.5 + reach, from.x(), to.x()) - from.x());
            addColumn(x, from, to, std::min(first, last) - reach, std::max(first, last) + reach);
        }
    }

    void addColumn(int x, const QPointF& from, const QPointF& to, double top, double bottom) {
        const QPointF along = to - from;
        const double squared = QPointF::dotProduct(along, along);
        const int end = std::min(static_cast<int>(std::ceil(bottom)), size_.height());
        for (int y = std::max(0, static_cast<int>(std::floor(top))); y < end; ++y) {
            const QPointF pixel = QPointF(x + 0.5, y + 0.5) - from;
            const double share =
                squared > 0 ? std::clamp(QPointF::dotProduct(pixel, along) / squared, 0.0, 1.0) : 0;
            const QPointF apart = pixel - share * along;
            const double distance = std::sqrt(QPointF::dotProduct(apart, apart));
            const double covered = std::clamp(halfWidth_ - distance + 0.5, 0.0, 1.0);
            auto& value = values_[static_cast<std::size_t>(y) * static_cast<std::size_t>(size_.width()) +
                                  static_cast<std::size_t>(x)];
            value = std::max(value, static_cast<unsigned char>(std::lround(255 * covered)));
        }
    }

    QSize size_;
    double halfWidth_;
    std::vector<unsigned char> values_;
};

/// The height of the line in the middle of each column from `left` on; beyond its ends, `bottom`.
std::vector<double> heights(const QPolygonF& line, int columns, double bottom) {
    std::vector<double> result(static_cast<std::size_t>(columns), bottom);
    qsizetype next = 1;
    for (int x = 0; x < columns; ++x) {
        const double middle = x + 0.5;
        while (next < line.size() && line[next].x() < middle) {
            ++next;
        }
        if (next < line.size() && middle >= line[next - 1].x()) {
            const QPointF& from = line[next - 1];
            const QPointF& to = line[next];
            const double share = to.x() > from.x() ? (middle - from.x()) / (to.x() - from.x()) : 0;
            result[static_cast<std::size_t>(x)] = from.y() + share * (to.y() - from.y());
        }
    }
    return result;
}

/// `chart` in pixels, relative to the corner of the image.
QImage chartImage(const LineChart& chart, QSize size) {
    const LineCoverage coverage(chart.line, chart.lineWidth, size);
    const auto tops = heights(chart.line, size.width(), chart.area.bottom());
    const double opacity = chart.color.alphaF();
    const QRgb rgb = chart.color.rgb() & RGB_MASK;
    const auto pixelOf = [rgb](double alpha) {
        return qPremultiply(rgb | static_cast<QRgb>(std::lround(255 * alpha)) << 24);
    };
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < size.height(); ++y) {
        const double depth = std::clamp((y + 0.5 - chart.area.top()) / chart.area.height(), 0.0, 1.0);
        const double fade = opacity * (chart.topOpacity + depth * (chart.bottomOpacity - chart.topOpacity));
        const double bottom = std::min(chart.area.bottom(), y + 1.0);
        const QRgb below = pixelOf(fade);
        const unsigned char* const covered = coverage.row(y);
        auto* const pixels = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < size.width(); ++x) {
            const double inArea = bottom - std::max<double>(tops[static_cast<std::size_t>(x)], y);
            if (covered[x] == 0 && (inArea <= 0 || inArea >= 1)) {
                pixels[x] = inArea <= 0 ? 0 : below;
                continue;
            }
            const double line = opacity * covered[x] / 255;
            pixels[x] = pixelOf(line + fade * std::clamp(inArea, 0.0, 1.0) * (1 - line));
        }
    }
    return image;
}

}  // namespace

void paintLineChart(QPainter& painter, const LineChart& chart) {
    if (chart.area.isEmpty()) {
        return;
    }
    const QTransform device = painter.deviceTransform();
    LineChart inPixels = chart;
    inPixels.lineWidth *= deviceScale(painter);
    const double reach = inPixels.lineWidth / 2 + 1;
    const QRect pixels = device.mapRect(chart.area).adjusted(-reach, -reach, reach, reach).toAlignedRect();
    inPixels.line = device.map(chart.line).translated(-pixels.topLeft());
    inPixels.area = device.mapRect(chart.area).translated(-pixels.topLeft());
    drawPixels(painter, pixels.topLeft(), chartImage(inPixels, pixels.size()));
}

}  // namespace kestro
