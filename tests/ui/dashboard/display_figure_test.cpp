#include "ui/dashboard/display_figure.h"

#include "tests/ui/controls/view_test.h"

namespace kestro {
namespace {

using DisplayFigureTest = ViewTest;

/// The lowest inked row between two columns; -1: none.
int lowestInk(const QImage& image, int left, int right) {
    for (int y = image.height() - 1; y >= 0; --y) {
        for (int x = left; x <= right; ++x) {
            if (qAlpha(image.pixel(x, y)) > 100) {
                return y;
            }
        }
    }
    return -1;
}

int rightmostInk(const QImage& image) {
    for (int x = image.width() - 1; x >= 0; --x) {
        if (lowestInk(image, x, x) >= 0) {
            return x;
        }
    }
    return -1;
}

TEST_F(DisplayFigureTest, StartsAtItsLeftEdgeWhateverTheFirstFigure) {
    for (const char* text : {"17", "4", "88", "100"}) {
        DisplayFigure figure(QStringLiteral("Load"), QStringLiteral("%"));
        figure.setFigure(QString::fromUtf8(text));
        figure.resize(120, 30);

        const QImage image = picture(figure);

        int left = 0;
        while (left < image.width() && lowestInk(image, left, left) < 0) {
            ++left;
        }
        EXPECT_LE(left, 1) << text;
    }
}

TEST_F(DisplayFigureTest, KeepsItsUnitOnTheBaselineWhenItShrinks) {
    // E has a flat bottom, so its lowest inked row is the baseline.
    for (const int width : {200, 110, 80, 60}) {
        DisplayFigure figure(QStringLiteral("Load"), QStringLiteral("E"));
        figure.setFigure(QStringLiteral("EEEE"));
        figure.resize(width, 30);

        const QImage image = picture(figure);

        const int unit = rightmostInk(image);
        EXPECT_NEAR(lowestInk(image, unit - 2, unit), lowestInk(image, 0, 12), 1) << width;
        int top = 0;
        while (top < image.height() && lowestInk(image.copy(0, 0, width, top + 1), unit - 2, unit) < 0) {
            ++top;
        }
        EXPECT_GT(top, 8) << "the rightmost letter is the smaller unit, at width " << width;
    }
}

}  // namespace
}  // namespace kestro
