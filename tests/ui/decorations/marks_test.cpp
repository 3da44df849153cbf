#include "ui/decorations/orvanel_watermark.h"
#include "ui/decorations/progressive_blur_fade.h"
#include "ui/decorations/simple_flame_icon.h"

#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

namespace kestro {
namespace {

TEST(SimpleFlamePath, FillsItsRectangle) {
    const QRectF rect(10, 20, 30, 60);

    const QRectF bounds = simpleFlamePath(rect).boundingRect();

    EXPECT_NEAR(bounds.left(), rect.left(), 0.01);
    EXPECT_NEAR(bounds.top(), rect.top(), 0.01);
    EXPECT_NEAR(bounds.right(), rect.right(), 0.01);
    EXPECT_NEAR(bounds.bottom(), rect.bottom(), 0.01);
}

TEST(SimpleFlamePath, IsEmptyForAnEmptyRectangle) {
    EXPECT_TRUE(simpleFlamePath({}).isEmpty());
    EXPECT_TRUE(simpleFlamePath(QRectF(0, 0, 10, 0)).isEmpty());
}

TEST(SimpleFlamePath, IsWideAtTheBottomAndPointedAtTheTop) {
    const QPainterPath path = simpleFlamePath(QRectF(0, 0, 100, 100));

    EXPECT_TRUE(path.contains(QPointF(50, 85)));
    EXPECT_FALSE(path.contains(QPointF(5, 5)));
    EXPECT_FALSE(path.contains(QPointF(95, 5)));
    EXPECT_FALSE(path.contains(QPointF(2, 98)));
}

TEST(ProgressiveBlurFade, RisesOverEightPointsAtBothEdges) {
    struct Row {
        int y;
        double opacity;  // in the middle of the row
    };
    QImage image(10, 100, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::white);
    QPainter painter(&image);

    ProgressiveBlurFade::apply(painter, QRectF(image.rect()));
    painter.end();

    for (const Row row : {Row{0, 0.391}, Row{3, 0.634}, Row{7, 0.959}, Row{8, 1}, Row{50, 1}, Row{91, 1},
                          Row{92, 0.959}, Row{96, 0.634}, Row{99, 0.391}}) {
        EXPECT_NEAR(qAlpha(image.pixel(5, row.y)) / 255.0, row.opacity, 0.02) << row.y;
    }
}

TEST(OrvanelWatermark, AcceptsNoInputOrFocus) {
    const OrvanelWatermark watermark(OrvanelWatermark::Variant::full);

    EXPECT_TRUE(watermark.testAttribute(Qt::WA_TransparentForMouseEvents));
    EXPECT_EQ(watermark.focusPolicy(), Qt::NoFocus);
}

TEST(OrvanelWatermark, IsHiddenFromAssistiveTechnology) {
    OrvanelWatermark watermark(OrvanelWatermark::Variant::compact);
    watermark.show();

    EXPECT_TRUE(QAccessible::queryAccessibleInterface(&watermark)->state().invisible);
}

TEST(OrvanelWatermark, PaintsInsideItsSizeAndIsSmallerWhenCompact) {
    const QSizeF size = OrvanelWatermark::markSize(OrvanelWatermark::Variant::full);
    QImage image(120, 40, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);

    OrvanelWatermark::paint(painter, QPointF(110, 20), OrvanelWatermark::Variant::full);
    painter.end();

    QRect inked;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (qAlpha(image.pixel(x, y)) > 0) {
                inked |= QRect(x, y, 1, 1);
            }
        }
    }
    EXPECT_LT(OrvanelWatermark::markSize(OrvanelWatermark::Variant::compact).width(), size.width());
    EXPECT_GE(inked.left(), static_cast<int>(110 - size.width()) - 1);
    EXPECT_LE(inked.right(), 110);
    EXPECT_GT(inked.width(), size.width() * 0.9);
}

}  // namespace
}  // namespace kestro
