#include "shell/linux/panel_anchor.h"

#include <gtest/gtest.h>

#include <climits>

namespace kestro {
namespace {

const ScreenFrame topPanel{{0, 0, 1280, 800}, {0, 28, 1280, 772}, 1};

TEST(PanelAnchor, SpansTheThicknessOfThePanel) {
    const ScreenFrame bottom{{0, 0, 1280, 800}, {0, 0, 1280, 760}, 1};
    const ScreenFrame left{{0, 0, 1280, 800}, {40, 0, 1240, 800}, 1};
    const ScreenFrame right{{0, 0, 1280, 800}, {0, 0, 1240, 800}, 1};

    EXPECT_EQ(panelAnchor(QPoint(1000, 10), {topPanel}), QRect(1000, 0, 1, 28));
    EXPECT_EQ(panelAnchor(QPoint(1000, 790), {bottom}), QRect(1000, 760, 1, 40));
    EXPECT_EQ(panelAnchor(QPoint(5, 300), {left}), QRect(0, 300, 40, 1));
    EXPECT_EQ(panelAnchor(QPoint(1270, 300), {right}), QRect(1240, 300, 40, 1));
}

TEST(PanelAnchor, IsThePointItselfWherePanelsReserveNoSpace) {
    EXPECT_EQ(panelAnchor(QPoint(600, 400), {topPanel}), QRect(600, 400, 1, 1));
}

TEST(PanelAnchor, IsNullWithoutAPoint) {
    EXPECT_TRUE(panelAnchor(std::nullopt, {topPanel}).isNull());
    EXPECT_TRUE(panelAnchor(QPoint(5000, 5000), {topPanel}).isNull());
}

TEST(PointOnPanel, IsThePointerOverAPanel) {
    const ScreenFrame beside{{1280, 0, 1280, 800}, {1280, 0, 1240, 800}, 1};

    EXPECT_EQ(pointOnPanel(QPoint(1000, 27), {topPanel, beside}), QPoint(1000, 27));
    EXPECT_EQ(pointOnPanel(QPoint(2550, 400), {topPanel, beside}), QPoint(2550, 400));
}

TEST(PointOnPanel, IsAbsentElsewhere) {
    for (const QPoint pointer : {QPoint(1000, 28), QPoint(1279, 799), QPoint(1280, 10), QPoint(-1, 10)}) {
        EXPECT_FALSE(pointOnPanel(pointer, {topPanel}).has_value()) << pointer.x() << ',' << pointer.y();
    }
    EXPECT_FALSE(pointOnPanel(std::nullopt, {topPanel}).has_value());
    EXPECT_FALSE(pointOnPanel(QPoint(10, 10), {}).has_value());
}

TEST(ClickPoint, PrefersAPointerAtAPanel) {
    EXPECT_EQ(clickPoint(QPoint(197, 25), QPoint(1000, 12), {topPanel}), QPoint(1000, 12));
    EXPECT_EQ(clickPoint(QPoint(197, 25), QPoint(640, 400), {topPanel}), QPoint(197, 25));
}

TEST(ClickPoint, UsesWhicheverPointIsKnown) {
    EXPECT_EQ(clickPoint(std::nullopt, QPoint(640, 400), {topPanel}), QPoint(640, 400));
    EXPECT_EQ(clickPoint(QPoint(197, 25), std::nullopt, {topPanel}), QPoint(197, 25));
    EXPECT_FALSE(clickPoint(std::nullopt, std::nullopt, {topPanel}).has_value());
}

TEST(PointFromPanel, ScalesFromTheOriginOfItsScreen) {
    const ScreenFrame left{{0, 0, 1280, 800}, {0, 0, 1280, 800}, 1};
    const ScreenFrame doubled{{1280, 0, 1280, 800}, {1280, 0, 1280, 800}, 2};

    EXPECT_EQ(pointFromPanel({100, 20}, {left, doubled}), QPoint(100, 20));
    EXPECT_EQ(pointFromPanel({1280 + 2000, 30}, {left, doubled}), QPoint(1280 + 1000, 15));
}

TEST(PointFromPanel, RejectsTheOriginAndPointsOutsideEveryScreen) {
    for (const QPoint point : {QPoint(0, 0), QPoint(-5, 10), QPoint(5000, 10), QPoint(INT_MAX, INT_MIN)}) {
        EXPECT_FALSE(pointFromPanel(point, {topPanel}).has_value());
    }
    EXPECT_FALSE(pointFromPanel({10, 10}, {}).has_value());
}

}  // namespace
}  // namespace kestro
