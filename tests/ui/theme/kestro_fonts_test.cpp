#include "ui/theme/kestro_fonts.h"

#include <gtest/gtest.h>

#include <QFontMetricsF>
#include <QRawFont>
#include <QTextLayout>

namespace kestro {
namespace {

TEST(KestroFonts, PrefersTheFirstFamilyOfTheListThatIsInstalled) {
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

TEST(KestroFonts, FractionalSizesAreShapedLargerAndThenResized) {
    QTextLayout layout(QStringLiteral("Fanless"), KestroFonts::font(10.5, QFont::Medium, 0.5));
    layout.beginLayout();
    layout.createLine();
    layout.endLayout();
    QGlyphRun run = layout.glyphRuns().constFirst();
    const QPointF lastBefore = run.positions().constLast();

    KestroFonts::resize(run, KestroFonts::sizeFactor(10.5));

    EXPECT_DOUBLE_EQ(run.rawFont().pixelSize(), 10.5);
    EXPECT_DOUBLE_EQ(run.positions().constLast().x(), lastBefore.x() * 10.5 / 11);
    const double tracking = KestroFonts::font(10.5, QFont::Medium, 0.5).letterSpacing();
    EXPECT_NEAR(tracking * KestroFonts::sizeFactor(10.5), 0.5, 1.0 / 64);
}

TEST(KestroFonts, HintsOnlyVerticallyAndNotAtAllOnFineScreens) {
    EXPECT_EQ(KestroFonts::font(10).hintingPreference(), QFont::PreferVerticalHinting);
    EXPECT_EQ(KestroFonts::font(10, QFont::Medium, 0, 1.25).hintingPreference(), QFont::PreferVerticalHinting);
    EXPECT_EQ(KestroFonts::font(10, QFont::Medium, 0, 1.5).hintingPreference(), QFont::PreferNoHinting);
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

TEST(KestroFonts, NeedsNoCellsWhereFiguresAreEquallyWide) {
    KestroFonts::setFamily(QStringLiteral("DejaVu Sans Mono"));
    const double cell = KestroFonts::figureWidth(KestroFonts::font(12));
    KestroFonts::setFamily({});

    EXPECT_EQ(cell, 0);
}

}  // namespace
}  // namespace kestro
