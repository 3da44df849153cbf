#include "ui/paint/hairline.h"

#include "ui/paint/surface_paint.h"

#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

namespace kestro {
namespace {

QImage canvas(int points, double scale) {
    const int pixels = static_cast<int>(points * scale);
    QImage image(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(scale);
    image.fill(Qt::black);
    return image;
}

TEST(Hairline, IsHalfAPointInWholeDevicePixels) {
    EXPECT_DOUBLE_EQ(hairlineWidth(1), 1);
    EXPECT_DOUBLE_EQ(hairlineWidth(1.25) * 1.25, 1);
    EXPECT_DOUBLE_EQ(hairlineWidth(1.5) * 1.5, 1);
    EXPECT_DOUBLE_EQ(hairlineWidth(2), 0.5);
    EXPECT_DOUBLE_EQ(hairlineWidth(2.5) * 2.5, 1);
    EXPECT_DOUBLE_EQ(hairlineWidth(3) * 3, 2);
    EXPECT_DOUBLE_EQ(hairlineWidth(4), 0.5);
}

class HairlineAtScale : public testing::TestWithParam<double> {};

TEST_P(HairlineAtScale, FillsExactlyOneRowOfDevicePixelsAtItsFullOpacity) {
    QImage image = canvas(40, GetParam());
    QPainter painter(&image);

    kestroHairlineBorder(painter, QRectF(10.3, 10.3, 20, 20), 0, Qt::white);
    painter.end();

    const int middle = static_cast<int>(20 * GetParam());
    int lit = 0;
    for (int y = 0; y < middle; ++y) {
        const int level = qRed(image.pixel(middle, y));
        EXPECT_TRUE(level == 0 || level == 255) << "row " << y << " is blurred: " << level;
        lit += level == 255 ? 1 : 0;
    }
    EXPECT_EQ(lit, 1);
}

TEST_P(HairlineAtScale, StaysInsideItsRectangle) {
    QImage image = canvas(40, GetParam());
    QPainter painter(&image);
    const QRectF rect = snappedToDevice(painter, QRectF(10, 10, 20, 20));

    kestroHairlineBorder(painter, rect, 0, Qt::white);
    painter.end();

    const int top = static_cast<int>(std::lround(rect.top() * GetParam()));
    const int middle = static_cast<int>(20 * GetParam());
    EXPECT_EQ(qRed(image.pixel(middle, top - 1)), 0);
    EXPECT_EQ(qRed(image.pixel(middle, top)), 255);
}

INSTANTIATE_TEST_SUITE_P(Scales, HairlineAtScale, testing::Values(1.0, 1.25, 1.5, 1.75, 2.0));

TEST(SnappedToDevice, FollowsTheDevicePixelsOfTheScale) {
    QImage image = canvas(40, 1.25);
    QPainter painter(&image);

    const QRectF snapped = snappedToDevice(painter, QRectF(10.1, 3.3, 0.1, 7));

    EXPECT_DOUBLE_EQ(snapped.left() * 1.25, 13);
    EXPECT_DOUBLE_EQ(snapped.width() * 1.25, 1);
    EXPECT_DOUBLE_EQ(snapped.top() * 1.25, 4);
    EXPECT_DOUBLE_EQ(snapped.bottom() * 1.25, 13);
}

class BarAtScale : public testing::TestWithParam<double> {
protected:
    /// The rows that a bar of `height` with its top at `top` lights, whole or in part.
    static std::vector<int> levels(double top, double height) {
        QImage image = canvas(40, GetParam());
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        paintBar(painter, QRectF(5, top, 30, height), 1, Qt::black, Qt::white);
        painter.end();
        std::vector<int> lit;
        const int middle = static_cast<int>(20 * GetParam());
        for (int y = 0; y < image.height(); ++y) {
            if (const int level = qRed(image.pixel(middle, y)); level > 0) {
                lit.push_back(level);
            }
        }
        return lit;
    }
};

TEST_P(BarAtScale, IsEquallyHighAndSharpWhereverItIs) {
    for (const double height : {1.5, 2.0, 3.0, 4.0}) {
        const size_t pixels = std::max(1L, std::lround(height * GetParam()));
        for (double top = 2; top < 30; top += 0.5) {
            EXPECT_EQ(levels(top, height), std::vector<int>(pixels, 255)) << height << " high at " << top;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Scales, BarAtScale, testing::Values(1.0, 1.25, 1.5, 1.75, 2.0));

}  // namespace
}  // namespace kestro
