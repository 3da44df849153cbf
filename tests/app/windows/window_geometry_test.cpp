#include "app/windows/window_geometry.h"

#include "ui/popover/popover_geometry.h"

#include <gtest/gtest.h>

namespace kestro {
namespace {

// A screen with a 30 points high top panel, as most of these tests need.
constexpr QRect screen(0, 0, 1920, 1080);
constexpr QRect belowTopPanel(0, 30, 1920, 1050);
constexpr QRect aboveBottomPanel(0, 0, 1920, 1040);

TEST(PopoverFrame, OpensBelowAnItemInATopPanelRightAligned) {
    const QRect item(1500, 0, 100, 30);

    EXPECT_EQ(popoverFrame(item, popover_geometry::size, screen, belowTopPanel), QRect(1270, 36, 330, 325));
}

TEST(PopoverFrame, OpensAboveAnItemInABottomPanel) {
    const QRect item(1500, 1040, 100, 40);

    EXPECT_EQ(popoverFrame(item, popover_geometry::size, screen, aboveBottomPanel),
              QRect(1270, 1040 - 6 - 325, 330, 325));
}

TEST(PopoverFrame, KeepsEightInsideTheScreen) {
    const QRect atTheRight(1900, 0, 20, 30);
    const QRect atTheLeft(0, 0, 60, 30);

    EXPECT_EQ(popoverFrame(atTheRight, popover_geometry::size, screen, belowTopPanel).x(), 1920 - 8 - 330);
    EXPECT_EQ(popoverFrame(atTheLeft, popover_geometry::size, screen, belowTopPanel).x(), 8);
}

TEST(PopoverFrame, OpensBesideAnItemInAVerticalPanel) {
    const QRect rightOfPanel(60, 0, 1860, 1080);
    const QRect leftOfPanel(0, 0, 1860, 1080);

    EXPECT_EQ(popoverFrame({0, 400, 60, 40}, popover_geometry::size, screen, rightOfPanel),
              QRect(66, 400, 330, 325));
    EXPECT_EQ(popoverFrame({1860, 400, 60, 40}, popover_geometry::size, screen, leftOfPanel),
              QRect(1860 - 6 - 330, 400, 330, 325));
}

TEST(PopoverFrame, OpensInTheUsualCornerWhenTheItemsPositionIsUnknown) {
    EXPECT_EQ(popoverFrame({}, popover_geometry::size, screen, belowTopPanel), QRect(1582, 36, 330, 325));
    EXPECT_EQ(popoverFrame({}, popover_geometry::size, screen, aboveBottomPanel),
              QRect(1582, 1040 - 6 - 325, 330, 325));
    EXPECT_EQ(popoverFrame({}, popover_geometry::size, screen, screen), QRect(1582, 8, 330, 325));
}

TEST(PopoverFrame, StaysOnTheItemsScreen) {
    const QRect secondScreen(1920, 0, 1280, 1024);
    const QRect item(1930, 0, 50, 24);

    EXPECT_EQ(popoverFrame(item, popover_geometry::size, secondScreen, secondScreen).topLeft(), QPoint(1928, 30));
}

TEST(PopoverFrame, StartsAtTheTopLeftOfAScreenThatIsTooSmall) {
    const QRect tiny(0, 0, 320, 200);

    EXPECT_EQ(popoverFrame({300, 0, 20, 20}, popover_geometry::size, tiny, tiny).topLeft(), QPoint(8, 8));
}

TEST(PlaceOnScreen, LeavesAVisibleWindowAlone) {
    const QRect atTheEdges(660, 30, 1260, 480);

    EXPECT_EQ(placeOnScreen(atTheEdges, belowTopPanel), atTheEdges);
    EXPECT_EQ(placeOnScreen(belowTopPanel, belowTopPanel), belowTopPanel);
}

TEST(PlaceOnScreen, MovesAWindowAsLittleAsPossible) {
    EXPECT_EQ(placeOnScreen({1800, 300, 1260, 480}, belowTopPanel), QRect(1920 - 8 - 1260, 300, 1260, 480));
    EXPECT_EQ(placeOnScreen({200, -10, 1260, 480}, belowTopPanel), QRect(200, 38, 1260, 480));
    EXPECT_EQ(placeOnScreen({-2000, 5000, 1260, 480}, belowTopPanel), QRect(8, 1080 - 8 - 480, 1260, 480));
}

TEST(PlaceOnScreen, ShrinksAWindowThatIsLargerThanItsScreen) {
    const QRect small(0, 0, 1024, 600);
    const QRect halved(0, 14, 960, 526);

    EXPECT_EQ(placeOnScreen({82, -75, 860, 750}, small), QRect(82, 8, 860, 584));
    EXPECT_EQ(placeOnScreen({-150, 30, 1260, 480}, halved), QRect(8, 30, 944, 480));
    EXPECT_EQ(placeOnScreen({0, 0, 3000, 3000}, small), QRect(8, 8, 1008, 584));
}

TEST(PlaceOnScreen, StaysOnTheWindowsScreen) {
    const QRect secondScreen(1920, 0, 1280, 1024);

    EXPECT_EQ(placeOnScreen({1900, 100, 860, 750}, secondScreen), QRect(1928, 100, 860, 750));
}

TEST(ResizedKeepingBottomLeft, KeepsTheBottomLeftCorner) {
    const QRect frame(200, 400, 1260, 480);

    EXPECT_EQ(resizedKeepingBottomLeft(frame, {1500, 750}), QRect(200, 130, 1500, 750));
    EXPECT_EQ(resizedKeepingBottomLeft(frame, {800, 460}), QRect(200, 420, 800, 460));
}

TEST(AutomaticDashboardFrame, GrowsAndShrinksAroundTheCentre) {
    const QRect frame(330, 300, 1260, 480);

    EXPECT_EQ(automaticDashboardFrame(frame, 788), QRect(566, 300, 788, 480));
    EXPECT_EQ(automaticDashboardFrame({566, 300, 788, 480}, 1260), QRect(330, 300, 1260, 480));
}

TEST(AutomaticDashboardFrame, KeepsAGreaterHeight) {
    const QRect tall(330, 200, 1260, 700);

    EXPECT_EQ(automaticDashboardFrame(tall, 1260), tall);
}

TEST(AutomaticDashboardFrame, GrowsAShorterWindowTo480) {
    const QRect frame = automaticDashboardFrame({330, 300, 1260, 430}, 1260);

    EXPECT_EQ(frame.height(), 480);
    EXPECT_EQ(frame.y() + frame.height(), 300 + 430);
}

TEST(WindowedZoomRule, FillsTheVisibleAreaAndRemembersTheFrame) {
    const QRect frame(330, 300, 1260, 480);

    EXPECT_EQ(windowedZoom(frame, std::nullopt, belowTopPanel), (WindowedZoom{belowTopPanel, frame}));
}

TEST(WindowedZoomRule, ReturnsToThePreviousFrame) {
    const QRect before(330, 300, 1260, 480);

    EXPECT_EQ(windowedZoom(belowTopPanel, before, belowTopPanel), (WindowedZoom{before, std::nullopt}));
}

TEST(WindowedZoomRule, CentresADefaultFrameWithoutAPreviousOne) {
    EXPECT_EQ(windowedZoom(belowTopPanel, std::nullopt, belowTopPanel),
              (WindowedZoom{QRect(410, 30 + 525 - 240, 1100, 480), std::nullopt}));
}

TEST(WindowedZoomRule, CountsAWindowWithinTenPointsAsFilling) {
    const QRect close(10, 40, 1910, 1040);
    const QRect tooFarLeft(11, 30, 1920, 1050);
    const QRect tooNarrow(0, 30, 1909, 1050);

    EXPECT_NE(windowedZoom(close, std::nullopt, belowTopPanel).frame, belowTopPanel);
    EXPECT_EQ(windowedZoom(tooFarLeft, std::nullopt, belowTopPanel).frame, belowTopPanel);
    EXPECT_EQ(windowedZoom(tooNarrow, std::nullopt, belowTopPanel).frame, belowTopPanel);
}

TEST(TitleBand, IsTheTopFiftyPointsLeftOfTheButtons) {
    const QSize content(1260, 480);

    EXPECT_TRUE(isInTitleBand({0, 0}, content));
    EXPECT_TRUE(isInTitleBand({1111, 50}, content));
    EXPECT_FALSE(isInTitleBand({1112, 10}, content));
    EXPECT_FALSE(isInTitleBand({100, 51}, content));
    EXPECT_FALSE(isInTitleBand({100, -1}, content));
}

TEST(ResizeEdges, AreTheBorderAndBothEdgesNearCorners) {
    const QSize content(800, 500);

    EXPECT_EQ(resizeEdges({400, 250}, content), Qt::Edges());
    EXPECT_EQ(resizeEdges({2, 250}, content), Qt::Edges(Qt::LeftEdge));
    EXPECT_EQ(resizeEdges({799, 250}, content), Qt::Edges(Qt::RightEdge));
    EXPECT_EQ(resizeEdges({400, 0}, content), Qt::Edges(Qt::TopEdge));
    EXPECT_EQ(resizeEdges({400, 499}, content), Qt::Edges(Qt::BottomEdge));
    EXPECT_EQ(resizeEdges({1, 8}, content), Qt::LeftEdge | Qt::TopEdge);
    EXPECT_EQ(resizeEdges({790, 498}, content), Qt::RightEdge | Qt::BottomEdge);
    EXPECT_EQ(resizeEdges({11, 11}, content), Qt::LeftEdge | Qt::TopEdge);
    EXPECT_EQ(resizeEdges({788, 488}, content), Qt::RightEdge | Qt::BottomEdge);
    EXPECT_EQ(resizeEdges({12, 11}, content), Qt::Edges());
    EXPECT_EQ(resizeEdges({5, 250}, content), Qt::Edges());
}

TEST(Centred, AlignsTheCentres) {
    EXPECT_EQ(centred({860, 750}, belowTopPanel), QRect(530, 180, 860, 750));
}

}  // namespace
}  // namespace kestro
