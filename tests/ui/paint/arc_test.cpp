#include "ui/paint/arc.h"

#include <QImage>
#include <QPainter>
#include <QPen>

#include <gtest/gtest.h>

#include <cmath>

namespace kestro {
namespace {

constexpr int edge = 90;

Arc gauge(double from, double to) {
    return {QPointF(45, 45), 37, 8, from, to};
}

QImage canvas(double scale) {
    QImage image((QSizeF(edge, edge) * scale).toSize(), QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(scale);
    image.fill(Qt::transparent);
    return image;
}

QImage ours(const Arc& arc, double scale, const QColor& color) {
    QImage image = canvas(scale);
    QPainter painter(&image);
    paintArc(painter, arc, color);
    return image;
}

QImage stroked(const Arc& arc, double scale, const QColor& color) {
    QImage image = canvas(scale);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(color, arc.width, Qt::SolidLine, Qt::RoundCap));
    const QRectF ring(arc.centre - QPointF(arc.radius, arc.radius), QSizeF(2 * arc.radius, 2 * arc.radius));
    painter.drawArc(ring, qRound(-arc.from * 16), qRound((arc.from - arc.to) * 16));
    return image;
}

TEST(ArcTest, LooksLikeAStrokeOfQt) {
    for (const double scale : {1.0, 1.25, 1.5, 2.0}) {
        for (const double to : {145.0, 200.0, 300.0, 396.0}) {
            const QImage made = ours(gauge(144, to), scale, QColor(80, 140, 250, 220));
            const QImage expected = stroked(gauge(144, to), scale, QColor(80, 140, 250, 220));
            double sum = 0;
            for (int y = 0; y < made.height(); ++y) {
                for (int x = 0; x < made.width(); ++x) {
                    const int difference = std::abs(qAlpha(made.pixel(x, y)) - qAlpha(expected.pixel(x, y)));
                    ASSERT_LE(difference, 60) << scale << ", to " << to << " at " << x << ", " << y;
                    sum += difference;
                }
            }
            EXPECT_LE(sum / (made.width() * made.height()), 1.5) << scale << ", to " << to;
        }
    }
}

TEST(ArcTest, CoversTheLineAndItsRoundEnds) {
    const Arc half = gauge(0, 180);

    EXPECT_EQ(arcCoverage(half, {45, 82}), 1);
    EXPECT_EQ(arcCoverage(half, {45, 8}), 0);
    EXPECT_EQ(arcCoverage(half, {82, 43}), 1);
    EXPECT_EQ(arcCoverage(half, {82, 40}), 0);
    EXPECT_EQ(arcCoverage(half, {45, 45}), 0);
    EXPECT_NEAR(arcCoverage(half, {45, 86}), 0.5, 1e-9);
}

TEST(ArcTest, KeepsThePaintersTransformation) {
    QImage image = canvas(1.5);
    QPainter painter(&image);
    painter.translate(3, 4);
    painter.scale(1.125, 1.125);
    const QTransform before = painter.transform();

    paintArc(painter, gauge(144, 396), Qt::white);

    EXPECT_EQ(painter.transform(), before);
}

}  // namespace
}  // namespace kestro
