#include "ui/paint/tall_shapes.h"

#include "ui/paint/hairline.h"

#include <QColor>
#include <QImage>
#include <QPainter>
#include <QPen>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>

namespace kestro {
namespace {

constexpr double radius = 6;
/// Levels of 255.
constexpr int invisible = 3;
constexpr QColor translucent(255, 255, 255, 120);

class TallShapeAtScale : public testing::TestWithParam<double> {
protected:
    QImage painted(const std::function<void(QPainter&, const QRectF&)>& paint) const {
        const double scale = GetParam();
        QImage image(QSize(60, 400) * scale, QImage::Format_ARGB32_Premultiplied);
        image.setDevicePixelRatio(scale);
        image.fill(Qt::black);
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        paint(painter, snappedToDevice(painter, QRectF(5, 5, 50, 390)));
        return image;
    }

    static int largestDifference(const QImage& a, const QImage& b) {
        int largest = 0;
        for (int y = 0; y < a.height(); ++y) {
            for (int x = 0; x < a.width(); ++x) {
                largest = std::max(largest, std::abs(qRed(a.pixel(x, y)) - qRed(b.pixel(x, y))));
            }
        }
        return largest;
    }
};

TEST_P(TallShapeAtScale, AFillLooksAsIfPaintedAtOnce) {
    const QImage parts = painted(
        [](QPainter& painter, const QRectF& area) { fillTallRounded(painter, area, radius, translucent); });
    const QImage whole = painted([](QPainter& painter, const QRectF& area) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(translucent);
        painter.drawRoundedRect(area, radius, radius);
    });

    EXPECT_LE(largestDifference(parts, whole), invisible);
    EXPECT_EQ(qRed(parts.pixel(parts.rect().center())), translucent.alpha());
}

TEST_P(TallShapeAtScale, AnOutlineLooksAsIfPaintedAtOnce) {
    const double width = hairlineWidth(GetParam());
    const QPen pen(translucent, width, Qt::SolidLine, Qt::FlatCap, Qt::MiterJoin);
    const QImage parts =
        painted([&](QPainter& painter, const QRectF& area) { outlineTallRounded(painter, area, radius, pen); });
    const QImage whole = painted([&](QPainter& painter, const QRectF& area) {
        const double inset = width / 2;
        painter.setPen(pen);
        painter.drawRoundedRect(area.adjusted(inset, inset, -inset, -inset), radius - inset, radius - inset);
    });

    EXPECT_LE(largestDifference(parts, whole), invisible);
    EXPECT_EQ(qRed(parts.pixel(parts.rect().center())), 0);
}

INSTANTIATE_TEST_SUITE_P(Scales, TallShapeAtScale, testing::Values(1, 1.25, 1.5, 2, 3));

TEST(TallShape, ALowOneIsPaintedToo) {
    QImage image(20, 20, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::black);
    QPainter painter(&image);

    fillTallRounded(painter, QRectF(2, 2, 12, 12), radius, Qt::white);
    painter.end();

    EXPECT_EQ(qRed(image.pixel(8, 8)), 255);
    EXPECT_EQ(qRed(image.pixel(2, 2)), 0);
    EXPECT_EQ(qRed(image.pixel(14, 8)), 0);
}

}  // namespace
}  // namespace kestro
