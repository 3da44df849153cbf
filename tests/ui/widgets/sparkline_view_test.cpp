#include "ui/widgets/sparkline_view.h"

#include "tests/ui/controls/view_test.h"

#include <limits>

namespace kestro {
namespace {

const QRectF area(0, 0, 100, 40);

TEST(SparklineTop, IsTheLimitWhenThereIsOne) {
    EXPECT_EQ(sparklineTop(std::vector{5.0, 250.0}, 100), 100);
}

TEST(SparklineTop, IsTheLargestValueButAtLeastOne) {
    EXPECT_EQ(sparklineTop(std::vector{5.0, 250.0}, std::nullopt), 250);
    EXPECT_EQ(sparklineTop(std::vector{0.1, 0.4}, std::nullopt), 1);
    EXPECT_EQ(sparklineTop(std::vector{7.0, std::numeric_limits<double>::infinity()}, std::nullopt), 7);
    EXPECT_EQ(sparklineTop(std::vector<double>{}, std::nullopt), 1);
}

TEST(SparklinePoints, NeedTwoValues) {
    EXPECT_TRUE(sparklinePoints(std::vector<double>{}, 1, area).isEmpty());
    EXPECT_TRUE(sparklinePoints(std::vector{3.0}, 10, area).isEmpty());
}

TEST(SparklinePoints, GoFromEdgeToEdge) {
    const QPolygonF points = sparklinePoints(std::vector{0.0, 10.0}, 10, area);

    EXPECT_EQ(points, (QPolygonF{QPointF(0, 40), QPointF(100, 0)}));
}

TEST(SparklinePoints, AreEvenlySpacedAndHigherForLargerValues) {
    const QPolygonF points = sparklinePoints(std::vector{0.0, 5.0, 2.5, 10.0, 0.0}, 10, area);

    EXPECT_EQ(points, (QPolygonF{{0, 40}, {25, 20}, {50, 30}, {75, 0}, {100, 40}}));
}

TEST(SparklinePoints, StayWithinTheArea) {
    const double infinite = std::numeric_limits<double>::infinity();
    const double none = std::numeric_limits<double>::quiet_NaN();

    const QPolygonF points = sparklinePoints(std::vector{150.0, -20.0, infinite, -infinite, none}, 100, area);

    EXPECT_EQ(points, (QPolygonF{{0, 0}, {25, 40}, {50, 0}, {75, 40}, {100, 40}}));
}

TEST(SparklinePoints, StayAtTheBottomForATopOfZero) {
    const QPolygonF points = sparklinePoints(std::vector{0.0, 3.0}, 0, area);

    EXPECT_EQ(points, (QPolygonF{{0, 40}, {100, 40}}));
}

class SparklineViewTest : public ViewTest {
protected:
    SparklineViewTest() : view_(KestroTheme::accentCool, 100) {
        view_.resize(102, 42);
        view_.setSpoken(
            QStringLiteral("CPU"), [](double value) { return QString::number(value); },
            QStringLiteral(" percent"));
    }

    SparklineView view_;
};

TEST_F(SparklineViewTest, ExposesTheLatestAndTheHighestValue) {
    view_.setData({12, 46, 18});

    EXPECT_EQ(QAccessible::queryAccessibleInterface(&view_)->text(QAccessible::Name),
              QStringLiteral("CPU history, now 18 percent, highest 46"));
}

TEST_F(SparklineViewTest, DrawsNoLineForOneValue) {
    const QImage empty = picture(view_);

    view_.setData({50});

    EXPECT_EQ(picture(view_), empty);
}

TEST_F(SparklineViewTest, DrawsATintedLineAndAFadingArea) {
    view_.setData({50, 50, 50});

    const QImage image = picture(view_);

    EXPECT_GT(qAlpha(image.pixel(51, 21)), 200);
    EXPECT_GT(qAlpha(image.pixel(51, 25)), qAlpha(image.pixel(51, 38)));
    EXPECT_EQ(qAlpha(image.pixel(51, 10)), 0);
}

TEST_F(SparklineViewTest, NamesItsFullHeightOnRequest) {
    std::vector<double> named;
    view_.setTopText([&](double top) {
        named.push_back(top);
        return QStringLiteral("100%");
    });
    const QImage bare = picture(view_);

    view_.showTop(true);
    const QImage image = picture(view_);

    EXPECT_EQ(named, std::vector{100.0});
    EXPECT_NE(image, bare);
    EXPECT_EQ(image.copy(0, 14, 102, 28), bare.copy(0, 14, 102, 28));
    EXPECT_EQ(image.copy(40, 0, 62, 42), bare.copy(40, 0, 62, 42));
}

TEST_F(SparklineViewTest, RepaintsNothingForTheSameHistory) {
    view_.move(300, 300);
    view_.setData({1, 2, 3});
    view_.show();
    QApplication::processEvents();
    PaintCounter paints(view_);

    view_.setData({1, 2, 3});
    QApplication::processEvents();
    EXPECT_EQ(paints.count, 0);
    view_.setData({2, 3, 4});
    QApplication::processEvents();

    EXPECT_EQ(paints.count, 1);
}

}  // namespace
}  // namespace kestro
