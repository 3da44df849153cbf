#include "ui/symbols/symbol_painter.h"

#include <QPainter>

#include <gtest/gtest.h>

namespace kestro {
namespace {

/// The inked fraction of an image, 0..1, and its strongest alpha, 0..255.
struct Ink {
    double coverage = 0;
    int strongest = 0;
};

Ink inkOf(const QImage& image) {
    Ink ink;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const int alpha = qAlpha(image.pixel(x, y));
            ink.coverage += alpha / 255.0;
            ink.strongest = std::max(ink.strongest, alpha);
        }
    }
    ink.coverage /= static_cast<double>(image.width()) * image.height();
    return ink;
}

class EverySymbol : public testing::TestWithParam<int> {};

TEST_P(EverySymbol, IsDrawnClearlyAndInsideItsSquare) {
    for (const QString& name : SymbolPainter::names()) {
        const QImage image = SymbolPainter::image(name, GetParam(), Qt::white);
        const Ink ink = inkOf(image);

        EXPECT_EQ(image.width(), GetParam());
        EXPECT_GT(ink.coverage, 0.04) << name.toStdString();
        EXPECT_LT(ink.coverage, 0.80) << name.toStdString();
        EXPECT_GT(ink.strongest, 150) << name.toStdString();
    }
}

INSTANTIATE_TEST_SUITE_P(Pixels, EverySymbol, testing::Values(7, 8, 9, 10, 12, 16, 24, 32, 64, 128));

int alphaAt(const char* name, int pixels, int x, int y) {
    return qAlpha(SymbolPainter::image(QString::fromUtf8(name), pixels, Qt::white).pixel(x, y));
}

TEST(SymbolPainter, KeepsSmallSymbolsDistinct) {
    for (int x = 0; x < 7; ++x) {
        EXPECT_LT(alphaAt("chevron.up.chevron.down", 7, x, 3), 64) << "the chevrons are apart";
    }
    EXPECT_GT(alphaAt("battery.100", 10, 9, 4), 200) << "the battery has a terminal";
    EXPECT_LT(alphaAt("battery.100", 10, 4, 3), 64) << "between its charge and its case";
    EXPECT_LT(alphaAt("internaldrive", 8, 4, 3), 64) << "the drive is hollow";
    EXPECT_LT(alphaAt("speedometer", 8, 2, 4), 100) << "the dial is hollow";
    EXPECT_LT(alphaAt("gearshape", 10, 4, 4), 64) << "the gear has a hole";
}

TEST(SymbolPainter, DrawsSmallSymbolsSharpInSlightlyLargerSquares) {
    const QImage own = SymbolPainter::image(QStringLiteral("arrow.down"), 7, Qt::white);

    EXPECT_EQ(SymbolPainter::image(QStringLiteral("arrow.down"), 9, Qt::white).copy(1, 1, 7, 7), own);
}

TEST(SymbolPainter, KnowsItsNames) {
    EXPECT_GE(SymbolPainter::names().size(), 46);
    EXPECT_TRUE(SymbolPainter::contains(QStringLiteral("gauge.with.needle")));
    EXPECT_FALSE(SymbolPainter::contains(QStringLiteral("no.such.symbol")));
    EXPECT_FALSE(SymbolPainter::contains(QStringLiteral("../symbols/cpu")));
}

TEST(SymbolPainter, TintsWithColorAndOpacity) {
    const QColor tint(10, 200, 100, 128);

    const QImage image = SymbolPainter::image(QStringLiteral("checkmark.square.fill"), 64, tint);

    const QColor corner = image.pixelColor(12, 12);
    EXPECT_NEAR(corner.alpha(), 128, 1);
    EXPECT_NEAR(corner.red(), 10, 2);
    EXPECT_NEAR(corner.green(), 200, 2);
    EXPECT_NEAR(corner.blue(), 100, 2);
}

TEST(SymbolPainter, CutsMarksOutOfSolidSymbols) {
    const QImage image = SymbolPainter::image(QStringLiteral("checkmark.square.fill"), 48, Qt::white);

    EXPECT_EQ(qAlpha(image.pixel(21, 31)), 0);
    EXPECT_EQ(qAlpha(image.pixel(10, 38)), 255);
}

TEST(SymbolPainter, RendersEachSizeAndColorOnce) {
    const QImage first = SymbolPainter::image(QStringLiteral("cpu"), 20, Qt::red);
    const QImage again = SymbolPainter::image(QStringLiteral("cpu"), 20, Qt::red);
    const QImage other = SymbolPainter::image(QStringLiteral("cpu"), 20, Qt::green);

    EXPECT_EQ(first.cacheKey(), again.cacheKey());
    EXPECT_NE(first.cacheKey(), other.cacheKey());
}

TEST(SymbolPainter, PaintsNothingForAnUnknownNameOrAnEmptySquare) {
    QImage canvas(20, 20, QImage::Format_ARGB32_Premultiplied);
    canvas.fill(Qt::transparent);
    QPainter painter(&canvas);

    SymbolPainter::paint(painter, QStringLiteral("no.such.symbol"), QRectF(0, 0, 20, 20), Qt::white);
    SymbolPainter::paint(painter, QStringLiteral("cpu"), QRectF(), Qt::white);
    painter.end();

    EXPECT_EQ(inkOf(canvas).strongest, 0);
    EXPECT_TRUE(SymbolPainter::image(QStringLiteral("cpu"), -3, Qt::white).isNull());
    EXPECT_EQ(SymbolPainter::image(QStringLiteral("cpu"), 1'000'000, Qt::white).width(), 512);
}

TEST(SymbolPainter, SnapsToWholeDevicePixelsAtEveryScale) {
    for (const double scale : {1.0, 1.25, 1.5, 2.0}) {
        QImage canvas(40, 40, QImage::Format_ARGB32_Premultiplied);
        canvas.setDevicePixelRatio(scale);
        canvas.fill(Qt::transparent);
        QPainter painter(&canvas);
        const QRectF square(4.3, 4.3, 10, 10);
        SymbolPainter::paint(painter, QStringLiteral("square"), square, Qt::white);
        painter.end();

        const int pixels = static_cast<int>(std::lround(10 * scale));
        const int left = static_cast<int>(std::lround(4.3 * scale));
        const QImage expected = SymbolPainter::image(QStringLiteral("square"), pixels, Qt::white);
        EXPECT_EQ(canvas.copy(left, left, pixels, pixels).pixel(pixels / 2, 2), expected.pixel(pixels / 2, 2));
        EXPECT_EQ(canvas.copy(left, left, pixels, pixels).convertToFormat(expected.format()).bits()[0],
                  expected.bits()[0]);
    }
}

}  // namespace
}  // namespace kestro
