#include "ui/paint/text_painter.h"

#include "tests/ui/controls/view_test.h"
#include "ui/theme/kestro_fonts.h"

namespace kestro {
namespace {

using TextPainter = ViewTest;

const QString longText = QStringLiteral("A process with a very long name that never ends");

TEST_F(TextPainter, GivesAllFiguresTheSameWidth) {
    const TextStyle& style = text_styles::rowValue;

    EXPECT_DOUBLE_EQ(textWidth(QStringLiteral("1111"), style), textWidth(QStringLiteral("8888"), style));
    EXPECT_DOUBLE_EQ(textWidth(QStringLiteral("11.1%"), style), textWidth(QStringLiteral("90.4%"), style));
}

TEST_F(TextPainter, TracksFiguresLikeLetters) {
    TextStyle untracked = text_styles::displayFigure;
    untracked.tracking = 0;
    for (const char* text : {"1", "100", "88", "12.5", "GB", "1000 GB"}) {
        const QString figure = QString::fromUtf8(text);
        const auto gaps = static_cast<double>(figure.size() - 1);

        const double tracked = textWidth(figure, text_styles::displayFigure);

        EXPECT_NEAR(tracked, textWidth(figure, untracked) - 0.6 * gaps, 0.1) << text;
    }
}

TEST_F(TextPainter, LeavesFittingTextUnchanged) {
    const FittedText fitted = fitText(QStringLiteral("Memory"), text_styles::rowLabel, 200, TextFit::label);

    EXPECT_EQ(fitted, (FittedText{QStringLiteral("Memory"), 1}));
}

TEST_F(TextPainter, ShrinksALabelBeforeElidingIt) {
    const double natural = textWidth(longText, text_styles::rowLabel);

    const FittedText fitted = fitText(longText, text_styles::rowLabel, natural * 0.9, TextFit::label);

    EXPECT_EQ(fitted.text, longText);
    EXPECT_NEAR(fitted.scale, 0.9, 0.001);
}

TEST_F(TextPainter, ElidesALabelAtTheRightAtFourFifthsOfItsSize) {
    const FittedText fitted = fitText(longText, text_styles::rowLabel, 60, TextFit::label);

    EXPECT_NEAR(fitted.scale, 0.8, 0.001);
    EXPECT_TRUE(fitted.text.endsWith(QChar(0x2026)));
    EXPECT_TRUE(longText.startsWith(fitted.text.chopped(1)));
    TextStyle smaller = text_styles::rowLabel;
    smaller.size *= fitted.scale;
    EXPECT_LE(textWidth(fitted.text, smaller), 60);
}

TEST_F(TextPainter, DoesNotElideALabelThatJustFits) {
    const double room = textWidth(longText, text_styles::rowLabel) * 0.8;

    EXPECT_EQ(fitText(longText, text_styles::rowLabel, room - 1e-9, TextFit::label).text, longText);
    EXPECT_NE(fitText(longText, text_styles::rowLabel, room - 0.1, TextFit::label).text, longText);
}

TEST_F(TextPainter, NeverElidesAValue) {
    const FittedText fitted =
        fitText(QStringLiteral("192.168.100.200"), text_styles::rowValue, 30, TextFit::value);

    EXPECT_EQ(fitted.text, QStringLiteral("192.168.100.200"));
    EXPECT_NEAR(fitted.scale * text_styles::rowValue.size, 7, 0.001);
}

TEST_F(TextPainter, NeverShrinksBelowSevenPoints) {
    TextStyle tiny = text_styles::rowDetail;
    tiny.size = 8;

    const FittedText fitted = fitText(longText, tiny, 60, TextFit::label);

    EXPECT_NEAR(fitted.scale * tiny.size, 7, 0.001);
}

TEST_F(TextPainter, HandlesABoxWithoutWidth) {
    EXPECT_EQ(fitText(QString(), text_styles::rowLabel, 0, TextFit::label).text, QString());
    EXPECT_EQ(fitText(longText, text_styles::rowLabel, -5, TextFit::label).text, QString(QChar(0x2026)));
}

TEST_F(TextPainter, ShowsControlAndDirectionCharactersAsSpaces) {
    const QString hostile = QStringLiteral("evil\n\t\x1b[31m") + QChar(0x202E) + QStringLiteral("txt.exe");

    const QString line = singleLine(hostile);

    EXPECT_EQ(line, QStringLiteral("evil   [31m txt.exe"));
}

TEST_F(TextPainter, TruncatesOverlongText) {
    EXPECT_EQ(singleLine(QString(1'000'000, QLatin1Char('x'))).size(), 512);
}

TEST_F(TextPainter, NeverSplitsASurrogatePairWhenEliding) {
    const QString faces = QString::fromUtf8("😀😀😀😀😀😀😀😀😀😀😀😀");

    for (double width = 5; width < 120; width += 3) {
        const QString text = fitText(faces, text_styles::rowLabel, width, TextFit::label).text;
        const QString kept = text.endsWith(QChar(0x2026)) ? text.chopped(1) : text;
        EXPECT_FALSE(!kept.isEmpty() && kept.back().isHighSurrogate()) << width;
    }
}

TEST_F(TextPainter, CentresTheTextInItsLine) {
    EXPECT_DOUBLE_EQ(baselineOffset(14, 9, 3), 10);
    EXPECT_DOUBLE_EQ(baselineOffset(12, 9, 3), 9);
}

TEST_F(TextPainter, PlacesTheBaselineOnWholePointsAtEveryScale) {
    EXPECT_DOUBLE_EQ(baselineOffset(12, 8.72, 2.17), 9);
    EXPECT_DOUBLE_EQ(baselineOffset(14, 8.72, 2.17), 10);
    EXPECT_DOUBLE_EQ(baselineOffset(14, 9.69, 2.41), 11);
    EXPECT_DOUBLE_EQ(baselineOffset(30, 29.06, 7.24), 26);
}

TEST_F(TextPainter, AppliesCapitals) {
    TextStyle capitals = text_styles::groupHeading;

    EXPECT_DOUBLE_EQ(textWidth(QStringLiteral("Compute"), capitals),
                     textWidth(QStringLiteral("COMPUTE"), capitals));
}

TEST_F(TextPainter, FollowsAFontChange) {
    const double before = textWidth(QStringLiteral("Performance"), text_styles::rowLabel);

    KestroFonts::setFamily(QStringLiteral("DejaVu Sans Mono"));
    const double other = textWidth(QStringLiteral("Performance"), text_styles::rowLabel);
    KestroFonts::setFamily(QString());

    EXPECT_NE(other, before);
    EXPECT_DOUBLE_EQ(textWidth(QStringLiteral("Performance"), text_styles::rowLabel), before);
}

TEST_F(TextPainter, PaintsWithinItsBox) {
    QImage image(200, 40, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);

    drawText(painter, QRectF(50, 10, 60, 14), longText, text_styles::rowLabel);
    painter.end();

    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (x < 49 || x > 111 || y < 10 || y > 25) {
                ASSERT_EQ(qAlpha(image.pixel(x, y)), 0) << x << ", " << y;
            }
        }
    }
    EXPECT_NE(image, QImage(200, 40, QImage::Format_ARGB32_Premultiplied));
}

}  // namespace
}  // namespace kestro
