#include "shell/linux/notifier/glance_icon.h"

#include "shell/linux/notifier/icon_pixmaps.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace kestro {
namespace {

/// The maximum opacity of the pixels in a column.
int columnOpacity(const QImage& image, int column) {
    int most = 0;
    for (int row = 0; row < image.height(); ++row) {
        most = std::max(most, qAlpha(image.pixel(column, row)));
    }
    return most;
}

TEST(GlanceIcon, PlacesItsRowsOnAGridOf22) {
    const auto rows = glanceRows({42, 18}, 22);

    EXPECT_EQ(rows[0].bar, QRectF(1, 1, 2.5, 9));
    EXPECT_EQ(rows[1].bar, QRectF(1, 12, 2.5, 9));
    EXPECT_DOUBLE_EQ(rows[0].fill.height(), 3.78);
    EXPECT_DOUBLE_EQ(rows[0].fill.bottom(), 10);
    EXPECT_DOUBLE_EQ(rows[0].figure.right(), 21.5);
    EXPECT_DOUBLE_EQ(rows[0].figure.width(), 16);
    EXPECT_EQ(rows[0].text, QStringLiteral("42"));
    EXPECT_EQ(rows[1].text, QStringLiteral("18"));
}

TEST(GlanceIcon, ScalesWithItsSize) {
    const auto small = glanceRows({42, 18}, 22);
    const auto large = glanceRows({42, 18}, 44);

    EXPECT_DOUBLE_EQ(large[1].bar.top(), 2 * small[1].bar.top());
    EXPECT_DOUBLE_EQ(large[0].fill.height(), 2 * small[0].fill.height());
    EXPECT_DOUBLE_EQ(large[0].figure.right(), 2 * small[0].figure.right());
}

TEST(GlanceIcon, ClampsItsValuesAndMarksMissingOnes) {
    const auto rows = glanceRows({250, -3}, 22);
    const auto none = glanceRows({}, 22);

    EXPECT_EQ(rows[0].text, QStringLiteral("100"));
    EXPECT_EQ(rows[0].fill, rows[0].bar);
    EXPECT_EQ(rows[1].text, QStringLiteral("0"));
    EXPECT_DOUBLE_EQ(rows[1].fill.height(), 0);
    ASSERT_EQ(none.size(), 2U);
    EXPECT_EQ(none[0].text, QStringLiteral("--"));
    EXPECT_EQ(none[1].text, QStringLiteral("--"));
}

TEST(GlanceIcon, GivesASingleValueTheWholeIcon) {
    const auto memory = glanceRows({42, std::nullopt}, 22);
    const auto processor = glanceRows({std::nullopt, 18}, 22);

    ASSERT_EQ(memory.size(), 1U);
    EXPECT_EQ(memory[0].text, QStringLiteral("42"));
    EXPECT_EQ(memory[0].bar, QRectF(1, 2, 2.5, 18));
    EXPECT_GT(memory[0].size, glanceRows({42, 18}, 22)[0].size);
    ASSERT_EQ(processor.size(), 1U);
    EXPECT_EQ(processor[0].text, QStringLiteral("18"));
}

TEST(GlanceIcon, StaysInsideItsSquareInEverySize) {
    for (const int pixels : {16, 22, 24, 32, 44, 48, 64}) {
        const QImage image = glanceIcon({100, 100}, pixels, PanelScheme::dark);

        ASSERT_EQ(image.size(), QSize(pixels, pixels));
        // The figure 100 reaches its right edge and keeps clear of the gap beside the bar.
        EXPECT_GT(columnOpacity(image, pixels * 20 / 22), 0) << pixels;
        EXPECT_LT(columnOpacity(image, pixels * 9 / 44), 128) << pixels;
    }
}

TEST(GlanceIcon, FollowsThePanelsScheme) {
    const QImage dark = glanceIcon({100, 50}, 44, PanelScheme::dark);
    const QImage light = glanceIcon({100, 50}, 44, PanelScheme::light);

    EXPECT_GT(qGray(dark.pixel(4, 10)), 200);
    EXPECT_LT(qGray(light.pixel(4, 10)), 60);
}

TEST(SymbolIcon, IsCentredInItsShareOfTheSquare) {
    const QString name = QStringLiteral("waveform.path.ecg");
    const QImage whole = symbolIcon(name, 44, 1, PanelScheme::dark);
    const QImage inset = symbolIcon(name, 44, 0.5, PanelScheme::dark);

    ASSERT_EQ(whole.size(), QSize(44, 44));
    ASSERT_EQ(inset.size(), QSize(44, 44));
    EXPECT_GT(columnOpacity(whole, 5), 0);
    EXPECT_EQ(columnOpacity(inset, 10), 0);
    EXPECT_GT(columnOpacity(inset, 14), 0);
    EXPECT_EQ(columnOpacity(inset, 33), 0);
}

TEST(Haloed, SurroundsTheIconWithTheColourOfThePanel) {
    QImage dot(5, 5, QImage::Format_ARGB32_Premultiplied);
    dot.fill(Qt::transparent);
    dot.setPixelColor(2, 2, Qt::black);

    const QImage image = haloed(dot, PanelScheme::light);

    EXPECT_EQ(image.pixelColor(2, 2), QColor(Qt::black));
    EXPECT_GT(image.pixelColor(1, 2).alpha(), 60);
    EXPECT_EQ(image.pixelColor(1, 2).lightness(), 255);
    EXPECT_EQ(image.pixelColor(0, 2).alpha(), 0);
}

TEST(NotifierPixmap, IsInNetworkByteOrderAndNotPremultiplied) {
    QImage image(2, 1, QImage::Format_ARGB32);
    image.setPixel(0, 0, qRgba(0x11, 0x22, 0x33, 0x80));
    image.setPixel(1, 0, qRgba(0xAA, 0xBB, 0xCC, 0xFF));

    const NotifierPixmap pixmap = notifierPixmap(image);

    EXPECT_EQ(pixmap.width, 2);
    EXPECT_EQ(pixmap.height, 1);
    EXPECT_EQ(pixmap.bytes, QByteArray::fromHex("80112233ffaabbcc"));
}

TEST(IconPixmaps, ReportsWhetherTheImageChanged) {
    IconPixmaps icon;

    EXPECT_TRUE(icon.setIcon(StatusGlance{1, 2}, PanelLook{PanelScheme::dark, true}));
    EXPECT_FALSE(icon.setIcon(StatusGlance{1, 2}, PanelLook{PanelScheme::dark, true}));
    EXPECT_TRUE(icon.setIcon(StatusGlance{1, 2}, PanelLook{PanelScheme::light, true}));
    EXPECT_TRUE(icon.setIcon(NotifierSymbol{QStringLiteral("waveform.path.ecg"), false},
                             PanelLook{PanelScheme::light, true}));
    EXPECT_EQ(icon.pixmaps().size(), 7);
    EXPECT_TRUE(icon.setIcon({}, PanelLook{PanelScheme::light, true}));
    EXPECT_TRUE(icon.pixmaps().isEmpty());
}

TEST(IconPixmaps, HaveAHaloWhenTheSchemeIsAGuess) {
    IconPixmaps known;
    IconPixmaps guessed;

    known.setIcon(StatusGlance{1, 2}, PanelLook{PanelScheme::dark, true});
    guessed.setIcon(StatusGlance{1, 2}, PanelLook{PanelScheme::dark, false});

    EXPECT_NE(known.pixmaps(), guessed.pixmaps());
}

TEST(IconPixmaps, AreEmptyForAnUnknownSymbol) {
    IconPixmaps icon;

    icon.setIcon(NotifierSymbol{QStringLiteral("no.such.symbol"), false}, PanelLook{PanelScheme::dark, true});

    EXPECT_TRUE(icon.pixmaps().isEmpty());
}

}  // namespace
}  // namespace kestro
