#include "ui/paint/surface_paint.h"

#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

namespace kestro {
namespace {

TEST(PaintBar, ClipsAShortFillToItsTrack) {
    QImage image(40, 4, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);

    paintBar(painter, QRectF(0, 0, 40, 4), 0.02, Qt::transparent, Qt::red);
    painter.end();

    EXPECT_EQ(qAlpha(image.pixel(2, 1)), 0);
    EXPECT_LT(qAlpha(image.pixel(0, 0)), 200);
}

}  // namespace
}  // namespace kestro
