#include "ui/theme/kestro_fonts.h"

#include "ui/paint/text_painter.h"

#include <QFontMetricsF>
#include <QImage>
#include <QPainter>
#include <QPainterPath>

#include <gtest/gtest.h>

#include <functional>

namespace kestro {
namespace {

TEST(KestroFonts, PrefersTheFirstInstalledFamilyOfTheList) {
    const QStringList installed{QStringLiteral("DejaVu Sans"), QStringLiteral("Cantarell"),
                                QStringLiteral("Noto Sans"), QStringLiteral("Comic Neue")};

    EXPECT_EQ(KestroFonts::choose(installed), QStringLiteral("Noto Sans"));
    EXPECT_EQ(KestroFonts::choose({QStringLiteral("Inter Variable"), QStringLiteral("Inter")}),
              QStringLiteral("Inter"));
    EXPECT_TRUE(KestroFonts::choose({QStringLiteral("Comic Neue")}).isEmpty());
}

TEST(KestroFonts, SizesAreInPixels) {
    EXPECT_EQ(KestroFonts::font(11).pixelSize(), 11);
    EXPECT_EQ(KestroFonts::sizeFactor(11), 1);
}

TEST(KestroFonts, FractionalSizesUseTheNextWholeSizeWithScaledTracking) {
    const QFont font = KestroFonts::font(10.5, QFont::Medium, 0.5);

    EXPECT_EQ(font.pixelSize(), 11);
    EXPECT_DOUBLE_EQ(KestroFonts::sizeFactor(10.5), 10.5 / 11);
    EXPECT_NEAR(font.letterSpacing() * KestroFonts::sizeFactor(10.5), 0.5, 1.0 / 64);
}

TEST(KestroFonts, NoFontIsSmallerThanOnePixel) {
    EXPECT_EQ(KestroFonts::font(0).pixelSize(), 1);
    EXPECT_EQ(KestroFonts::sizeFactor(0), 0);
}

TEST(KestroFonts, HintsOnlyVerticallyAndNotAtAllOnFineScreens) {
    EXPECT_EQ(KestroFonts::font(10).hintingPreference(), QFont::PreferVerticalHinting);
    EXPECT_EQ(KestroFonts::font(10, QFont::Medium, 0, 1.25).hintingPreference(), QFont::PreferVerticalHinting);
    EXPECT_FALSE(KestroFonts::isFine(1.25));
    EXPECT_EQ(KestroFonts::font(10, QFont::Medium, 0, 1.5).hintingPreference(), QFont::PreferNoHinting);
    EXPECT_TRUE(KestroFonts::isFine(1.5));
}

TEST(KestroFonts, KnowsFontsWithDarkenedStems) {
    KestroFonts::setFamily(QStringLiteral("DejaVu Sans"));
    EXPECT_FALSE(KestroFonts::isDarkened());
    EXPECT_EQ(KestroFonts::shownWeight(QFont::DemiBold, 10, 1), QFont::DemiBold);
    KestroFonts::setFamily(QStringLiteral("Inter"));
    EXPECT_TRUE(KestroFonts::isDarkened());
    EXPECT_EQ(KestroFonts::shownWeight(QFont::DemiBold, 10, 1), QFont::Medium);
    EXPECT_EQ(KestroFonts::shownWeight(QFont::DemiBold, 10, 2), QFont::Medium);
    EXPECT_EQ(KestroFonts::shownWeight(QFont::DemiBold, 10, 3.5), QFont::DemiBold);
    EXPECT_EQ(KestroFonts::shownWeight(QFont::DemiBold, 30, 1), QFont::DemiBold);
    KestroFonts::setFamily({});
}

/// The ink of a text in black pixels, at scale 2.
double inkOf(const std::function<void(QPainter&)>& paint) {
    QImage image(1200, 120, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(2);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    paint(painter);
    painter.end();
    double ink = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            ink += qAlpha(image.pixel(x, y)) / 255.0;
        }
    }
    return ink;
}

/// The ink of the bare outlines, without hinting or darkening, in proportion to that of the text as drawn.
double darknessOf(const TextStyle& style) {
    const QString text = QStringLiteral("Performance Hamburgefonts");
    QFont design(KestroFonts::family());
    design.setPixelSize(static_cast<int>(style.size));
    design.setWeight(style.weight);
    design.setHintingPreference(QFont::PreferNoHinting);
    const double outlines = inkOf([&](QPainter& painter) {
        QPainterPath path;
        path.addText(QPointF(2, 40), design, text);
        painter.fillPath(path, Qt::black);
    });
    const double drawn = inkOf([&](QPainter& painter) {
        TextStyle black = style;
        black.ink = QColor(Qt::black);
        drawText(painter, QRectF(2, 0, 596, 60), text, black);
    });
    return drawn / outlines;
}

TEST(KestroFonts, DrawTextAsDarkAsDesigned) {
    for (const QFont::Weight weight : {QFont::Medium, QFont::DemiBold, QFont::Bold}) {
        for (const double size : {9.0, 10.0, 11.0, 12.0, 16.0, 30.0}) {
            const double darkness = darknessOf({size, 14, weight});
            EXPECT_GT(darkness, 0.97) << size << " of weight " << weight;
            EXPECT_LT(darkness, 1.2) << size << " of weight " << weight;
        }
    }
}

TEST(KestroFonts, FigureCellIsAsWideAsTheWidestFigureWithItsTracking) {
    const QFont font = KestroFonts::font(30, QFont::DemiBold, -0.6);
    const QFontMetricsF metrics(font);
    double widest = 0;
    double narrowest = 1000;
    for (char figure = '0'; figure <= '9'; ++figure) {
        widest = std::max(widest, metrics.horizontalAdvance(QLatin1Char(figure)));
        narrowest = std::min(narrowest, metrics.horizontalAdvance(QLatin1Char(figure)));
    }

    const double cell = KestroFonts::figureWidth(font);

    EXPECT_NEAR(cell, widest - narrowest < 0.01 ? 0 : widest - 0.6, 1.0 / 64);
}

TEST(KestroFonts, NeedsNoCellsWhenFiguresAreEquallyWide) {
    KestroFonts::setFamily(QStringLiteral("DejaVu Sans Mono"));
    const double cell = KestroFonts::figureWidth(KestroFonts::font(12));
    KestroFonts::setFamily({});

    EXPECT_EQ(cell, 0);
}

}  // namespace
}  // namespace kestro
