#include "ui/fancurve/fan_curve_plot.h"

#include "tests/ui/controls/view_test.h"
#include "ui/fancurve/fan_curve_canvas_view.h"

#include <algorithm>
#include <limits>

namespace kestro {
namespace {

constexpr double naN = std::numeric_limits<double>::quiet_NaN();

FanCurvePlot plot() {
    return {QSizeF(765, 220)};
}

TEST(FanCurvePlotTest, MapsTemperaturesAndSpeedsIntoThePadding) {
    EXPECT_EQ(plot().area(), QRectF(45, 16, 700, 180));
    EXPECT_DOUBLE_EQ(plot().x(30), 45);
    EXPECT_DOUBLE_EQ(plot().x(65), 395);
    EXPECT_DOUBLE_EQ(plot().x(100), 745);
    EXPECT_DOUBLE_EQ(plot().y(0), 196);
    EXPECT_DOUBLE_EQ(plot().y(2000), 151);
    EXPECT_DOUBLE_EQ(plot().y(8000), 16);
}

TEST(FanCurvePlotTest, MapsEverythingToTheStartOfAnEmptyAxis) {
    FanCurvePlot empty = plot();
    empty.minDisplayTemp = empty.maxDisplayTemp = 50;
    empty.maxDisplayRPM = 0;

    EXPECT_DOUBLE_EQ(empty.x(80), 45);
    EXPECT_DOUBLE_EQ(empty.y(4000), 196);
}

TEST(FanCurvePlotTest, DrawsTheCurveAs61EvenlySpacedPoints) {
    const FanCurveConfig config;
    const auto points = plot().curve(config);

    ASSERT_EQ(points.size(), 61U);
    EXPECT_EQ(points.front(), plot().point(30, 1250));
    EXPECT_EQ(points.back(), plot().point(100, 7300));
    EXPECT_DOUBLE_EQ(points[30].x(), plot().x(65));
    EXPECT_DOUBLE_EQ(points[30].y(), plot().y(config.evaluateRPM(65)));
}

TEST(FanCurvePlotTest, DrawsAFixedSpeedAsALevelLineWithinTheFansRange) {
    FanCurveConfig config;
    config.isFixedRPM = true;
    config.fixedRPM = 9000;

    const auto points = plot().curve(config);

    EXPECT_TRUE(std::ranges::all_of(points, [](const QPointF& p) { return p.y() == plot().y(7300); }));
}

TEST(FanCurvePlotTest, NeverDrawsAboveTheAcousticCeiling) {
    FanCurveConfig config;
    config.acousticCeilingEnabled = true;
    config.acousticCeilingRPM = 5200;

    const auto points = plot().curve(config);

    EXPECT_TRUE(std::ranges::all_of(points, [](const QPointF& p) { return p.y() >= plot().y(5200) - 1e-9; }));
    EXPECT_DOUBLE_EQ(points.back().y(), plot().y(5200));
}

TEST(FanCurvePlotTest, PlacesTheQuietBandAtTheBottomAndTheLoudBandAtTheTop) {
    EXPECT_EQ(plot().quietBand(), QRectF(45, 139.75, 700, 56.25));
    EXPECT_EQ(plot().loudBand(), QRectF(45, 16, 700, 67.5));
}

TEST(FanCurvePlotTest, AllowsAQuietBandTallerThanThePlot) {
    FanCurvePlot slow = plot();
    slow.maxDisplayRPM = 2000;

    EXPECT_DOUBLE_EQ(slow.quietBand().height(), 225);
    EXPECT_DOUBLE_EQ(slow.quietBand().bottom(), 196);
}

TEST(FanCurvePlotTest, AdaptsTheGridSpacingToTheAxis) {
    using Grid = std::vector<double>;
    const auto grid = [](double top) {
        FanCurvePlot fan = plot();
        fan.maxDisplayRPM = top;
        return fan.rpmGrid();
    };

    EXPECT_EQ(grid(4000), (Grid{0, 500, 1000, 2000, 3000, 4000}));
    EXPECT_EQ(grid(8000), (Grid{0, 2000, 4000, 6000, 8000}));
    EXPECT_EQ(grid(14000), (Grid{0, 5000, 10000}));
    EXPECT_EQ(plot().temperatureGrid(), (Grid{40, 50, 60, 70, 80, 90}));
}

TEST(FanCurvePlotTest, RoundsTheTopOfTheAxisUp) {
    EXPECT_EQ(maxDisplayRPM(7300), 8000);
    EXPECT_EQ(maxDisplayRPM(8000), 8000);
    EXPECT_EQ(maxDisplayRPM(3100), 4000);
    EXPECT_EQ(maxDisplayRPM(4000), 4000);
    EXPECT_EQ(maxDisplayRPM(4100), 6000);
    EXPECT_EQ(maxDisplayRPM(0), 1000);
    EXPECT_EQ(maxDisplayRPM(naN), 1000);
    EXPECT_EQ(maxDisplayRPM(1e300), 100'000);
}

TEST(FanCurvePlotTest, ShortensThousands) {
    EXPECT_EQ(rpmGridLabel(0), QStringLiteral("0"));
    EXPECT_EQ(rpmGridLabel(500), QStringLiteral("500"));
    EXPECT_EQ(rpmGridLabel(3000), QStringLiteral("3k"));
}

TEST(FanCurvePlotTest, FlipsALabelThatWouldLeaveThePlot) {
    const QRectF area = plot().area();

    const AnchorText text{{60, 12}, 9, 8, 8};

    const AnchorLabel inside = anchorLabel(area, {200, 100}, text, {});
    const AnchorLabel flipped = anchorLabel(area, {60, 100}, text, {});

    EXPECT_EQ(inside.area, QRectF(132, 83, 60, 12));
    EXPECT_EQ(inside.alignment, Qt::AlignRight);
    EXPECT_EQ(flipped.area.left(), 68);
    EXPECT_EQ(flipped.alignment, Qt::AlignLeft);
}

TEST(FanCurvePlotTest, KeepsALabelOffTheLivePoint) {
    const QRectF area = plot().area();
    const AnchorText text{{60, 12}, 9, 8, 8};
    const QRectF live(150, 80, 18, 18);

    const AnchorLabel below = anchorLabel(area, {200, 100}, text, live);
    const AnchorLabel noRoomBelow = anchorLabel(area, {200, 190}, text, live.translated(0, 90));

    EXPECT_EQ(below.area, QRectF(208, 106, 60, 12));
    EXPECT_EQ(below.alignment, Qt::AlignLeft);
    EXPECT_EQ(noRoomBelow.area, QRectF(132, 173, 60, 12));
}

using FanCurveCanvasViewTest = ViewTest;

FanCurveReading reading() {
    FanCurveReading reading;
    reading.currentTemp = 52.44;
    reading.currentRPM = 1420.9;
    reading.targetRPM = 1499.9;
    reading.fanName = QStringLiteral("Left Fan");
    return reading;
}

TEST_F(FanCurveCanvasViewTest, FormatsTheLiveFiguresAndBothAnchors) {
    EXPECT_EQ(reading().liveText(), QString::fromUtf8("Live: 52.4°C · 1420 RPM"));
    EXPECT_EQ(reading().targetText(), QStringLiteral("(Target: 1499 RPM)"));
    EXPECT_EQ(reading().lowLabel(), QString::fromUtf8("T_low (48°)"));
    EXPECT_EQ(reading().highLabel(), QString::fromUtf8("T_max (84°)"));
}

TEST_F(FanCurveCanvasViewTest, ExposesTheLiveTextAndBothAnchors) {
    FanCurveCanvasView view;
    view.setReading(reading());

    const AccessibleInfo info = view.accessibleInfo();

    EXPECT_EQ(info.name, QStringLiteral("Response curve, Left Fan"));
    EXPECT_TRUE(info.description.contains(reading().liveText()));
    EXPECT_TRUE(info.description.contains(reading().lowLabel()));
    EXPECT_TRUE(info.description.contains(reading().highLabel()));
}

TEST_F(FanCurveCanvasViewTest, PutsTheLivePointOnThePlot) {
    FanCurveCanvasView view;
    view.resize(765, view.sizeHint().height());
    FanCurveReading live = reading();
    live.currentTemp = 65;
    live.currentRPM = 4000;
    view.setReading(live);

    const QColor at = picture(view).pixelColor(395, 16 + 106);

    EXPECT_EQ(at.rgb(), KestroTheme::accentNominal().rgb());
}

TEST_F(FanCurveCanvasViewTest, KeepsTheLivePointOffTheLabelsOfTheAxes) {
    FanCurveCanvasView view;
    view.resize(765, view.sizeHint().height());
    const auto below = [&](double temperature) {
        FanCurveReading live = reading();
        live.currentTemp = temperature;
        live.currentRPM = 0;
        view.setReading(live);
        const FanCurvePlot plot{QSizeF(765, FanCurveCanvasView::canvasHeight)};
        const int top = FanCurveCanvasView::headerHeight + qRound(plot.area().bottom()) + 6;
        return picture(view).copy(0, top, 765, view.height() - top);
    };

    EXPECT_EQ(below(50), below(55));
}

TEST_F(FanCurveCanvasViewTest, SurvivesImpossibleFigures) {
    FanCurveCanvasView view;
    view.resize(300, 236);
    FanCurveReading odd = reading();
    odd.currentTemp = naN;
    odd.currentRPM = 1e300;
    odd.config.lowTemp = -1e300;
    odd.config.highTemp = 1e300;
    odd.config.maxRPM = 1e308;
    odd.maxDisplayRPM = maxDisplayRPM(odd.config.maxRPM);
    view.setReading(odd);

    const QImage image = picture(view);

    EXPECT_FALSE(image.isNull());
    EXPECT_EQ(odd.liveText(), QString::fromUtf8("Live: 0.0°C · 1000000000 RPM"));
}

TEST_F(FanCurveCanvasViewTest, RepaintsOnlyForANewReading) {
    FanCurveCanvasView view;
    view.resize(765, 236);
    view.setReading(reading());
    view.show();
    QApplication::processEvents();
    PaintCounter paints(view);

    view.setReading(reading());
    QApplication::processEvents();
    const int afterEqual = paints.count;
    FanCurveReading other = reading();
    other.currentTemp = 60;
    view.setReading(other);
    QApplication::processEvents();

    EXPECT_EQ(afterEqual, 0);
    EXPECT_EQ(paints.count, 1);
}

}  // namespace
}  // namespace kestro
