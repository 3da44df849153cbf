#include "ui/paint/line_chart.h"

#include <QImage>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QPen>

#include <gtest/gtest.h>

#include <cmath>

namespace kestro {
namespace {

const QSizeF canvasSize(120, 44);
constexpr int fineness = 8;

LineChart chartOf(const QPolygonF& line) {
    return {.line = line,
            .area = QRectF(2, 2, 116, 40),
            .color = QColor(80, 140, 250, 230),
            .lineWidth = 1.5,
            .topOpacity = 0.18,
            .bottomOpacity = 0.01};
}

QImage canvas(double scale) {
    QImage image((canvasSize * scale).toSize(), QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(scale);
    image.fill(Qt::transparent);
    return image;
}

QImage ours(const LineChart& chart, double scale) {
    QImage image = canvas(scale);
    QPainter painter(&image);
    paintLineChart(painter, chart);
    return image;
}

QImage paintedByQt(const LineChart& chart, double scale) {
    QImage image = canvas(scale);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath line;
    line.addPolygon(chart.line);
    QPainterPath below = line;
    below.lineTo(chart.line.last().x(), chart.area.bottom());
    below.lineTo(chart.line.first().x(), chart.area.bottom());
    below.closeSubpath();
    QLinearGradient fade(chart.area.topLeft(), chart.area.bottomLeft());
    QColor color = chart.color;
    color.setAlphaF(static_cast<float>(chart.color.alphaF() * chart.topOpacity));
    fade.setColorAt(0, color);
    color.setAlphaF(static_cast<float>(chart.color.alphaF() * chart.bottomOpacity));
    fade.setColorAt(1, color);
    painter.fillPath(below, fade);
    painter.strokePath(line, QPen(chart.color, chart.lineWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    return image;
}

/// What Qt paints in much finer pixels: at the target scale, its joins of steep lines are off by up to a third.
double expectedAlpha(const QImage& fine, int x, int y) {
    double sum = 0;
    for (int row = 0; row < fineness; ++row) {
        for (int column = 0; column < fineness; ++column) {
            sum += qAlpha(fine.pixel(x * fineness + column, y * fineness + row));
        }
    }
    return sum / (fineness * fineness);
}

void expectAlike(const QPolygonF& line) {
    for (const double scale : {1.0, 1.25, 1.5, 2.0}) {
        const QImage made = ours(chartOf(line), scale);
        const QImage fine = paintedByQt(chartOf(line), scale * fineness);
        double sum = 0;
        for (int y = 0; y < made.height(); ++y) {
            for (int x = 0; x < made.width(); ++x) {
                const double difference = std::abs(qAlpha(made.pixel(x, y)) - expectedAlpha(fine, x, y));
                ASSERT_LE(difference, 48) << scale << " at " << x << ", " << y;
                sum += difference;
            }
        }
        EXPECT_LE(sum / (made.width() * made.height()), 1) << scale;
    }
}

TEST(LineChartTest, LooksLikeAStrokeOverAFillOfQt) {
    expectAlike({{2, 20}, {31, 38}, {60, 5}, {89, 30}, {118, 12}});
}

TEST(LineChartTest, KeepsSteepAndLevelPartsWhole) {
    expectAlike({{2, 42}, {50, 42}, {54, 2}, {80, 2}, {84, 42}, {118, 42}});
}

TEST(LineChartTest, FadesTowardTheBottomAndPaintsNothingAboveTheLine) {
    const QImage image = ours(chartOf({{2, 12}, {118, 12}}), 2);

    EXPECT_EQ(qAlpha(image.pixel(120, 8)), 0);
    EXPECT_GE(qAlpha(image.pixel(120, 24)), 230);
    EXPECT_GT(qAlpha(image.pixel(120, 30)), 25);
    EXPECT_GT(qAlpha(image.pixel(120, 30)), qAlpha(image.pixel(120, 70)));
    EXPECT_EQ(qAlpha(image.pixel(120, 86)), 0);
}

TEST(LineChartTest, FollowsAndKeepsThePaintersTransformation) {
    const LineChart chart = chartOf({{2, 20}, {90, 12}});
    QImage image = canvas(1.5);
    QPainter painter(&image);
    painter.translate(3, 4);
    painter.scale(0.875, 0.875);
    const QTransform before = painter.transform();

    paintLineChart(painter, chart);

    EXPECT_EQ(painter.transform(), before);
    LineChart moved = chart;
    moved.line = before.map(chart.line);
    moved.area = before.mapRect(chart.area);
    moved.lineWidth *= 0.875;
    EXPECT_EQ(image, ours(moved, 1.5));
}

TEST(LineChartTest, KeepsToTheAreaBetweenPixels) {
    LineChart chart = chartOf({{2, 20}, {60, 20}});
    chart.bottomOpacity = chart.topOpacity;
    chart.area.setBottom(chart.area.bottom() + 0.2);

    const QImage image = ours(chart, 1.25);

    EXPECT_GT(qAlpha(image.pixel(40, 52)), 10) << "partly covered";
    EXPECT_EQ(qAlpha(image.pixel(40, 53)), 0);
    EXPECT_EQ(qAlpha(image.pixel(100, 52)), 0) << "beyond the end of the line";
    EXPECT_TRUE(ours({}, 1) == canvas(1)) << "an empty chart";
}

}  // namespace
}  // namespace kestro
