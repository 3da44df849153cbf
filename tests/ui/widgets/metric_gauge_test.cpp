#include "ui/widgets/metric_gauge.h"

#include "tests/ui/controls/view_test.h"

#include <limits>

namespace kestro {
namespace {

TEST(GaugeArc, MapsTheRangeFromStartToEnd) {
    EXPECT_DOUBLE_EQ(gaugeArcEnd(0, 0, 100), 0.15);
    EXPECT_DOUBLE_EQ(gaugeArcEnd(50, 0, 100), 0.5);
    EXPECT_DOUBLE_EQ(gaugeArcEnd(62.5, 20, 105), 0.5);
    EXPECT_DOUBLE_EQ(gaugeArcEnd(100, 0, 100), 0.85);
}

TEST(GaugeArc, StopsAtItsEndAboveTheMaximum) {
    EXPECT_DOUBLE_EQ(gaugeArcEnd(9000, 0, 7300), 0.85);
}

TEST(GaugeArc, StaysAtItsStartBelowTheMinimum) {
    EXPECT_DOUBLE_EQ(gaugeArcEnd(10, 20, 105), 0.15);
    EXPECT_DOUBLE_EQ(gaugeArcEnd(std::numeric_limits<double>::quiet_NaN(), 0, 100), 0.15);
}

TEST(GaugeArc, IsEmptyForAnEmptyOrInvertedRange) {
    EXPECT_DOUBLE_EQ(gaugeArcEnd(50, 100, 100), 0.15);
    EXPECT_DOUBLE_EQ(gaugeArcEnd(50, 100, 20), 0.15);
}

TEST(GaugeArc, HasItsGapAtTheBottom) {
    EXPECT_DOUBLE_EQ(gaugeAngle(0.15), 144);
    EXPECT_DOUBLE_EQ(gaugeAngle(0.85), 396);
}

TEST(GaugeMetricsTest, HaveTheSizesOfBothVariants) {
    const GaugeMetrics& full = gaugeMetrics(false);
    const GaugeMetrics& compact = gaugeMetrics(true);

    EXPECT_EQ(full.frame, 82);
    EXPECT_EQ(full.lineWidth, 8);
    EXPECT_EQ(full.valueSize, 16);
    EXPECT_EQ(full.unitSize, 9);
    EXPECT_EQ(full.titleSize, 11);
    EXPECT_EQ(full.subtitleSize, 9);
    EXPECT_EQ(full.titleTop, 82 - 9);
    EXPECT_EQ(full.height(), 99);
    EXPECT_EQ(full.innerWidth(), 58);
    EXPECT_EQ(compact.frame, 64);
    EXPECT_EQ(compact.lineWidth, 6);
    EXPECT_EQ(compact.valueSize, 14);
    EXPECT_EQ(compact.unitSize, 8);
    EXPECT_EQ(compact.titleSize, 10);
    EXPECT_EQ(compact.subtitleSize, 8);
    EXPECT_EQ(compact.titleTop, 64 - 7);
    EXPECT_EQ(compact.height(), 81);
    EXPECT_EQ(compact.innerWidth(), 44);
}

class MetricGaugeTest : public ViewTest {
protected:
    MetricGaugeTest() : gauge_(false) {
        gauge_.setGeometry(300, 300, 102, 99);
        gauge_.setContent(fan(1420));
    }

    static GaugeContent fan(double rpm) {
        return {QStringLiteral("Left Fan"), QStringLiteral("of 7300 RPM"), rpm, 0, 7300,
                QStringLiteral("RPM"),      KestroTheme::accentCool};
    }

    QString spoken() { return QAccessible::queryAccessibleInterface(&gauge_)->text(QAccessible::Name); }

    MetricGauge gauge_;
};

TEST_F(MetricGaugeTest, ExposesValueUnitAndMaximum) {
    EXPECT_EQ(spoken(), QStringLiteral("Left Fan, 1420 RPM of 7300"));
}

TEST_F(MetricGaugeTest, ExposesPercentAsAWord) {
    gauge_.setContent({QStringLiteral("Memory"), QStringLiteral("13.4 of 32.0 GB"), 42.7, 0, 100,
                       QStringLiteral("%"), KestroTheme::accentCool});

    EXPECT_EQ(spoken(), QStringLiteral("Memory, 42 percent, 13.4 of 32.0 GB"));
}

TEST_F(MetricGaugeTest, ExposesTheTargetButNoMaximumOfAnEmptyRange) {
    GaugeContent unknown = fan(1420);
    unknown.max = 0;
    unknown.subtitle = QStringLiteral("target 2100 RPM");
    gauge_.setContent(unknown);

    EXPECT_EQ(spoken(), QStringLiteral("Left Fan, 1420 RPM, target 2100 RPM"));
}

TEST_F(MetricGaugeTest, OmitsTheUnitIfItWouldTouchTheRing) {
    gauge_.setCompact(true);
    gauge_.setContent(fan(12'000));
    GaugeContent bare = fan(12'000);
    bare.unit.clear();

    const QImage shown = picture(gauge_);
    const QString name = spoken();
    gauge_.setContent(bare);

    EXPECT_EQ(shown, picture(gauge_));
    EXPECT_GT(gauge_.fittingTextScale(), 0.9);
    EXPECT_EQ(name, QStringLiteral("Left Fan, 12000 RPM of 7300"));
}

TEST_F(MetricGaugeTest, PaintsOnlyTheTrackForAnEmptyRange) {
    GaugeContent empty = fan(1420);
    empty.max = 0;
    gauge_.setContent(fan(0));
    const QImage atStart = picture(gauge_);
    gauge_.setContent(empty);
    const QImage noRange = picture(gauge_);

    // Where a value arc would start, both pictures show only the track.
    EXPECT_EQ(noRange.pixel(20, 64), atStart.pixel(20, 64));
    EXPECT_NEAR(qAlpha(noRange.pixel(14, 41)), 255 * 0.14, 3);
}

TEST_F(MetricGaugeTest, LeavesTheGapAtTheBottomOpen) {
    gauge_.setContent({{}, {}, 100, 0, 100, {}, KestroTheme::accentCool});

    const QImage image = picture(gauge_);

    EXPECT_EQ(qAlpha(image.pixel(51, 78)), 0);
    EXPECT_GT(qAlpha(image.pixel(51, 4)), 250);
    EXPECT_GT(qAlpha(image.pixel(14, 41)), 250);
    EXPECT_GT(qAlpha(image.pixel(88, 41)), 250);
}

TEST_F(MetricGaugeTest, GrowsAsAWhole) {
    gauge_.setContent({{}, {}, 100, 0, 100, {}, KestroTheme::accentCool});
    gauge_.resize(204, 198);
    gauge_.setGrowth(2);

    const QImage image = picture(gauge_);

    EXPECT_EQ(qAlpha(image.pixel(102, 156)), 0);
    EXPECT_GT(qAlpha(image.pixel(102, 8)), 250);
    EXPECT_GT(qAlpha(image.pixel(28, 82)), 250);
    EXPECT_GT(qAlpha(image.pixel(176, 82)), 250);
    EXPECT_EQ(qAlpha(image.pixel(16, 82)), 0);
}

TEST_F(MetricGaugeTest, ShrinksItsFigureToFitTheRing) {
    EXPECT_LT(gauge_.fittingTextScale(), 1);
    EXPECT_GE(gauge_.fittingTextScale(), 0.8);
    gauge_.setContent(fan(7));
    EXPECT_EQ(gauge_.fittingTextScale(), 1);
}

TEST_F(MetricGaugeTest, RepaintsNothingWithoutAVisibleChange) {
    gauge_.show();
    QApplication::processEvents();
    PaintCounter paints(gauge_);

    gauge_.setContent(fan(1420));
    QApplication::processEvents();
    EXPECT_EQ(paints.count, 0);
    gauge_.setContent(fan(1420.2));
    QApplication::processEvents();
    EXPECT_EQ(paints.count, 0) << "a change of less than a pixel";
    gauge_.setContent(fan(1500));
    QApplication::processEvents();

    EXPECT_EQ(paints.count, 1);
}

TEST_F(MetricGaugeTest, FollowsASlowDrift) {
    GaugeContent drifting = fan(0);
    drifting.max = 1;
    gauge_.setContent(drifting);
    gauge_.show();
    QApplication::processEvents();
    PaintCounter paints(gauge_);

    for (int step = 1; step <= 100; ++step) {
        drifting.value = step * 0.0009;
        gauge_.setContent(drifting);
        QApplication::processEvents();
    }

    EXPECT_GT(paints.count, 10);
    EXPECT_LT(paints.count, 90);
}

}  // namespace
}  // namespace kestro
