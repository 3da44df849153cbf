#include "ui/theme/kestro_fonts.h"

#include <QFontMetricsF>

#include <gtest/gtest.h>

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
