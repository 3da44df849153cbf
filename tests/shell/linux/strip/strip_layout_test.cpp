#include "shell/linux/strip/strip_layout.h"

#include <gtest/gtest.h>

namespace kestro {
namespace {

using strip_layout::itemFrames;
using strip_layout::itemWidth;
using strip_layout::separators;
using strip_layout::stripPosition;
using strip_layout::stripSize;

TEST(StripLayout, PutsTheFirstItemOnTheRight) {
    EXPECT_EQ(itemFrames({200, 50, 100}),
              (std::vector{QRect(153, 3, 200, 22), QRect(103, 3, 50, 22), QRect(3, 3, 100, 22)}));
    EXPECT_EQ(stripSize({200, 50, 100}), QSize(356, 28));
}

TEST(StripLayout, DrawsAHairlineBetweenItems) {
    EXPECT_EQ(separators(itemFrames({200, 50, 100})), (std::vector{153, 103}));
    EXPECT_TRUE(separators(itemFrames({200})).empty());
    EXPECT_TRUE(separators({}).empty());
}

TEST(StripLayout, IsEmptyWithoutItems) {
    EXPECT_TRUE(stripSize({}).isEmpty());
    EXPECT_TRUE(itemFrames({}).empty());
}

TEST(StripLayout, IsAtTheTopRightOfTheAvailableArea) {
    EXPECT_EQ(stripPosition({300, 28}, {0, 0, 1280, 800}), QPoint(970, 8));
    EXPECT_EQ(stripPosition({300, 28}, {1280, 28, 1920, 1052}), QPoint(2890, 36));
}

TEST(StripLayout, NeverExtendsBeyondTheLeftOfTheScreen) {
    EXPECT_EQ(stripPosition({900, 28}, {100, 0, 640, 480}), QPoint(100, 8));
}

TEST(StripLayout, ReservesSpaceForSymbolAndTitle) {
    StatusContent symbolOnly;
    symbolOnly.symbol = StatusSymbol{QStringLiteral("waveform.path.ecg"), QStringLiteral("Kestro"), 12};
    StatusContent both = symbolOnly;
    both.title.text = QStringLiteral(" RAM 42%");
    StatusContent textOnly = both;
    textOnly.symbol.reset();

    EXPECT_EQ(itemWidth(symbolOnly), 28);
    EXPECT_NEAR(itemWidth(both) - itemWidth(textOnly), 12 + strip_layout::symbolGap, 1);
    EXPECT_GT(itemWidth(textOnly), 2 * strip_layout::itemPadding + 20);
    EXPECT_EQ(itemWidth({}), strip_layout::itemHeight);
}

}  // namespace
}  // namespace kestro
