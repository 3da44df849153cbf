#include "ui/theme/window_shape.h"

#include <QBitmap>
#include <QPainter>
#include <QPainterPath>
#include <QWidget>

#include <gtest/gtest.h>

namespace kestro {
namespace {

/// The same shape as painted by Qt.
QRegion painted(const QRect& rect, double radius) {
    QPainterPath path;
    path.addRoundedRect(QRectF(QPointF(), QSizeF(rect.size())), radius, radius);
    QBitmap mask(rect.size());
    mask.clear();
    QPainter painter(&mask);
    painter.fillPath(path, Qt::color1);
    painter.end();
    return QRegion(mask).translated(rect.topLeft());
}

TEST(RoundedRegion, MatchesAPaintedRoundedRectangle) {
    const QRect rects[] = {{0, 0, 330, 325}, {0, 0, 1260, 480}, {7, -3, 61, 40}, {0, 0, 33, 200}};
    for (const QRect& rect : rects) {
        for (const double radius : {0.0, 4.0, 5.0, 6.0, 8.0, 10.0, 12.0, 16.0}) {
            EXPECT_EQ(roundedRegion(rect, radius), painted(rect, radius))
                << rect.width() << "x" << rect.height() << " radius " << radius;
        }
    }
}

TEST(RoundedRegion, HasFewRectanglesAtAnySize) {
    EXPECT_LE(roundedRegion({0, 0, 3840, 2160}, 12).rectCount(), 25);
    EXPECT_EQ(roundedRegion({0, 0, 3840, 2160}, 0).rectCount(), 1);
}

TEST(RoundedRegion, StaysWithinRectanglesSmallerThanTheirCorners) {
    for (int width = 0; width < 30; ++width) {
        for (int height = 0; height < 30; ++height) {
            const QRect rect(3, 4, width, height);
            const QRegion region = roundedRegion(rect, 12);
            EXPECT_TRUE(QRegion(rect).united(region) == QRegion(rect)) << width << "x" << height;
            EXPECT_EQ(region.isEmpty(), rect.isEmpty()) << width << "x" << height;
        }
    }
    EXPECT_EQ(roundedRegion({0, 0, 20, 20}, -3), QRegion(0, 0, 20, 20));
}

TEST(ShapeWindow, CutsTheCornersOnlyWhereWindowsAreNotBlended) {
    QWidget window;
    window.resize(200, 100);

    shapeWindow(window, 8, false);
    EXPECT_EQ(window.mask(), roundedRegion(window.rect(), 8));

    shapeWindow(window, 8, true);
    EXPECT_TRUE(window.mask().isEmpty());
}

}  // namespace
}  // namespace kestro
