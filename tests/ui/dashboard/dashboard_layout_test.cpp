#include "ui/dashboard/dashboard_layout.h"

#include "ui/dashboard/dashboard_width.h"

#include <gtest/gtest.h>

#include <cmath>

namespace kestro {
namespace {

SectionGrid gridAt(double width, double height, int sections = 5) {
    const auto frames = sectionFrames({width, height}, sections);
    return sectionGrid(sectionRowMetrics(width, sections).tier, frames.front().size());
}

TEST(DashboardWidth, GrowsWithTheSectionsAboveThree) {
    EXPECT_EQ(dashboardWidth(5), 1260);
    EXPECT_EQ(dashboardWidth(4), 1024);
    EXPECT_EQ(dashboardWidth(3), 788);
    EXPECT_EQ(dashboardWidth(2), 788);
    EXPECT_EQ(dashboardWidth(0), 788);
}

TEST(SectionRowMetricsTest, IsFullFrom215PerSection) {
    EXPECT_EQ(sectionRowMetrics(1260, 5), (SectionRowMetrics{18, 20, SectionTier::full}));
    EXPECT_EQ(sectionRowMetrics(1075, 5), (SectionRowMetrics{18, 20, SectionTier::full}));
}

TEST(SectionRowMetricsTest, IsCompactBelow215PerSection) {
    EXPECT_EQ(sectionRowMetrics(1074.9, 5), (SectionRowMetrics{12, 14, SectionTier::compact}));
    EXPECT_EQ(sectionRowMetrics(1000, 5), (SectionRowMetrics{12, 14, SectionTier::compact}));
    EXPECT_EQ(sectionRowMetrics(875, 5), (SectionRowMetrics{12, 14, SectionTier::compact}));
}

TEST(SectionRowMetricsTest, IsTightBelow175PerSection) {
    EXPECT_EQ(sectionRowMetrics(874.9, 5), (SectionRowMetrics{8, 10, SectionTier::tight}));
    EXPECT_EQ(sectionRowMetrics(740, 5), (SectionRowMetrics{8, 10, SectionTier::tight}));
}

TEST(SectionRowMetricsTest, CountsNoSectionsAsOne) {
    EXPECT_EQ(sectionRowMetrics(215, 0), (SectionRowMetrics{18, 20, SectionTier::full}));
    EXPECT_EQ(sectionRowMetrics(214, 0).tier, SectionTier::compact);
    EXPECT_TRUE(sectionFrames({788, 480}, 0).empty());
}

TEST(SectionFramesTest, HaveEqualWidthsBetweenHeaderAndFooter) {
    const auto frames = sectionFrames({1260, 480}, 5);

    ASSERT_EQ(frames.size(), 5U);
    EXPECT_DOUBLE_EQ(frames[0].left(), 20);
    EXPECT_DOUBLE_EQ(frames[0].top(), 58);
    EXPECT_DOUBLE_EQ(frames[0].width(), 229.6);
    EXPECT_DOUBLE_EQ(frames[0].height(), 480 - 98);
    EXPECT_DOUBLE_EQ(frames[1].left(), frames[0].right() + 18);
    EXPECT_DOUBLE_EQ(frames[4].right(), 1240);
}

TEST(SectionGridTest, HasTheInnerWidthsOfTheThreeTiers) {
    EXPECT_NEAR(gridAt(1260, 480).width, 205.6, 0.001);
    EXPECT_NEAR(gridAt(1000, 480).width, 164.8, 0.001);
    EXPECT_NEAR(gridAt(740, 420).width, 121.6, 0.001);
    EXPECT_EQ(gridAt(1260, 480).padding, 12);
    EXPECT_EQ(gridAt(1000, 480).padding, 10);
    EXPECT_EQ(gridAt(740, 420).padding, 8);
}

TEST(SectionGridTest, IsFullAtTheIdealSize) {
    const SectionGrid grid = gridAt(1260, 480);

    EXPECT_EQ(grid.heroHeight, 112);
    EXPECT_EQ(grid.rowsTop, 152);
    EXPECT_EQ(grid.pitch, 28);
    EXPECT_EQ(grid.detailPitch, 38);
    EXPECT_EQ(grid.spacing, RowSpacing::regular);
}

TEST(SectionGridTest, HasTallerRowsWhenCompact) {
    const SectionGrid grid = gridAt(1000, 480);

    EXPECT_EQ(grid.heroHeight, 92);
    EXPECT_EQ(grid.rowsTop, 132);
    EXPECT_EQ(grid.pitch, 30);
    EXPECT_EQ(grid.detailPitch, 38);
    EXPECT_EQ(grid.spacing, RowSpacing::regular);
}

TEST(SectionGridTest, IsDenseWhenTheRowsGetLessThan196) {
    const SectionGrid tight = gridAt(740, 420);
    EXPECT_EQ(tight.spacing, RowSpacing::dense);
    EXPECT_EQ(tight.pitch, 24);
    EXPECT_EQ(tight.detailPitch, 30);

    EXPECT_EQ(gridAt(1260, 469).spacing, RowSpacing::dense);
    EXPECT_EQ(gridAt(1260, 470).spacing, RowSpacing::regular);
}

TEST(SectionGridTest, HasRowsOfAtLeastTwenty) {
    const SectionGrid grid = gridAt(1260, 420);

    EXPECT_EQ(grid.pitch, 20);
    EXPECT_EQ(grid.detailPitch, 30);
}

TEST(SectionGridTest, KeepsRulesNearTheirLabelsInHighCards) {
    EXPECT_EQ(gridAt(1260, 480).spacing, RowSpacing::regular);
    EXPECT_EQ(gridAt(1260, 481).spacing, RowSpacing::roomy);
    EXPECT_EQ(gridAt(1000, 481).pitch, 30);
}

TEST(SectionGridTest, DividesTheSpareHeightBetweenHeroAndRows) {
    const SectionGrid grid = gridAt(1200, 600);

    EXPECT_EQ(grid.heroGrowth, 26);
    EXPECT_EQ(grid.heroHeight, 112 + 26);
    EXPECT_EQ(grid.rowsTop, 178);
    EXPECT_EQ(grid.pitch, 37);
    EXPECT_EQ(grid.detailPitch, 43);
    EXPECT_TRUE(grid.namesScales);
    EXPECT_FALSE(gridAt(1260, 520).namesScales);
}

TEST(SectionGridTest, GrowsTheHeroAtMostBy120AndRowsTo40) {
    EXPECT_EQ(gridAt(1200, 2160).heroGrowth, 120);
    EXPECT_EQ(gridAt(1200, 2160).pitch, 40);
    EXPECT_EQ(gridAt(914, 686).heroHeight, 92 + 55);
}

TEST(SectionGridTest, KeepsSevenRowsWithinTheCardAtAnySize) {
    for (double width = 740; width <= 3840; width += 31) {
        for (double height = 420; height <= 2160; height += 37) {
            for (int sections = 1; sections <= 5; ++sections) {
                const SectionGrid grid = gridAt(width, height, sections);
                ASSERT_LE(grid.rowsTop + 7 * grid.pitch, grid.height) << width << "x" << height;
            }
        }
    }
}

TEST(DashboardZoomTest, IsOneUpToTheIdealSize) {
    EXPECT_EQ(dashboardZoom({1260, 480}, 5), 1);
    EXPECT_EQ(dashboardZoom({740, 420}, 5), 1);
    EXPECT_EQ(dashboardZoom({788, 480}, 1), 1);
    EXPECT_EQ(dashboardZoom({3840, 420}, 5), 1);
}

TEST(DashboardZoomTest, EnlargesFullSectionsByEighths) {
    EXPECT_EQ(dashboardZoom({1500, 750}, 5), 1.25);
    EXPECT_EQ(dashboardZoom({1920, 1080}, 5), 1.75);
    EXPECT_EQ(dashboardZoom({2560, 1440}, 5), 2.375);
    EXPECT_EQ(dashboardZoom({3840, 2160}, 5), 3.5);
    EXPECT_EQ(dashboardZoom({3440, 1440}, 5), 2.5);
    EXPECT_EQ(dashboardZoom({7680, 4320}, 5), 5);
}

TEST(DashboardZoomTest, EnlargesFewerSectionsFurther) {
    EXPECT_EQ(dashboardZoom({1920, 1080}, 3), 1.875);
    EXPECT_EQ(dashboardZoom({1200, 1080}, 2), 1.875);
    EXPECT_EQ(dashboardZoom({1200, 1080}, 0), dashboardZoom({1200, 1080}, 1));
}

TEST(DashboardZoomTest, PrefersCompactSectionsToMuchEmptyHeight) {
    EXPECT_EQ(dashboardZoom({1600, 1200}, 5), 1.75);
    EXPECT_EQ(sectionRowMetrics(1600 / 1.75, 5).tier, SectionTier::compact);
}

TEST(DashboardZoomTest, EnlargesTwoRowsInAHighWindow) {
    EXPECT_EQ(dashboardZoom({1080, 1920}, 5), 1.625);
    EXPECT_EQ(dashboardZoom({1080, 1920}, 2), 1.75);
    EXPECT_EQ(dashboardZoom({740, 1000}, 5), 1.125);
}

TEST(SectionFramesTest, FormTwoRowsWhereTwoCardsOfTheUsualHeightFit) {
    EXPECT_EQ(sectionColumns({1260, 879}, 5), 5);
    EXPECT_EQ(sectionColumns({1260, 880}, 5), 3);
    EXPECT_EQ(sectionColumns({1260, 880}, 1), 1);
    EXPECT_EQ(sectionColumns({1260, 880}, 0), 1);

    const auto frames = sectionFrames({800, 880}, 5);

    ASSERT_EQ(frames.size(), 5U);
    EXPECT_DOUBLE_EQ(frames[0].height(), 382);
    EXPECT_DOUBLE_EQ(frames[3].top(), frames[0].bottom() + 18);
    EXPECT_DOUBLE_EQ(frames[3].bottom(), 880 - 26 - 14);
    EXPECT_DOUBLE_EQ(frames[2].right(), 780);
    EXPECT_DOUBLE_EQ(frames[3].left(), 20);
    EXPECT_DOUBLE_EQ(frames[4].right(), 780);
    EXPECT_DOUBLE_EQ(frames[3].width(), frames[4].width());
}

TEST(DashboardZoomTest, LeavesRoomForTheSectionsAtAnySize) {
    for (double width = 740; width <= 6000; width += 31) {
        for (double height = 420; height <= 4000; height += 37) {
            for (int sections = 1; sections <= 5; ++sections) {
                const double zoom = dashboardZoom({width, height}, sections);
                SCOPED_TRACE(testing::Message() << width << "x" << height << " with " << sections);
                ASSERT_EQ(zoom * 8, std::floor(zoom * 8));
                ASSERT_GE(zoom, 1);
                ASSERT_LE(zoom, 5);
                const int columns = sectionColumns(QSizeF(width, height) / zoom, sections);
                ASSERT_TRUE(zoom == 1 || (width / zoom >= 175 * columns && height / zoom >= 560));
                ASSERT_TRUE(columns == sections || width / zoom >= 215 * columns);
                ASSERT_TRUE(zoom == 1 || width / zoom >= 580) << "header and footer need it";
            }
        }
    }
}

TEST(ProcessListLayoutTest, AlignsWithTheRowsOfOtherSections) {
    EXPECT_EQ(processListLayout(gridAt(1260, 480), 6, false).firstRow, 40);
    EXPECT_EQ(processListLayout(gridAt(1000, 480), 6, false).firstRow, 42);
    EXPECT_EQ(processListLayout(gridAt(1260, 480), 6, false).headTop, 25);
}

TEST(ProcessListLayoutTest, StartsAt44WhenNoRowIsNear) {
    EXPECT_EQ(processListLayout(gridAt(740, 420), 8, false).firstRow, 44);
}

TEST(ProcessListLayoutTest, NamesTheMachineAboveAHeightOf330) {
    const SectionGrid high = gridAt(1260, 453);
    const SectionGrid low = gridAt(1260, 452);

    EXPECT_EQ(high.height, 331);
    EXPECT_TRUE(processListLayout(high, 6, false).hasFoot);
    EXPECT_FALSE(processListLayout(low, 6, false).hasFoot);
    EXPECT_EQ(processListLayout(high, 6, false).footTop, 331 - 39);
}

TEST(ProcessListLayoutTest, DividesTheHeightAmongTheProcesses) {
    const ProcessListLayout six = processListLayout(gridAt(1260, 480), 6, false);
    const ProcessListLayout ten = processListLayout(gridAt(1260, 480), 10, false);

    EXPECT_EQ(six.rowHeight, 28);
    EXPECT_EQ(six.rows, 6);
    EXPECT_NEAR(ten.rowHeight, 26.2, 0.001);
    EXPECT_EQ(ten.rows, 10);
}

TEST(ProcessListLayoutTest, DropsProcessesThatDoNotFitInRowsOf17) {
    const SectionGrid grid = gridAt(1260, 420);

    const ProcessListLayout many = processListLayout(grid, 40, false);

    EXPECT_EQ(many.rowHeight, 17);
    EXPECT_LT(many.rows, 40);
    EXPECT_LE(many.firstRow + many.rows * many.rowHeight, grid.height);
}

TEST(ProcessListLayoutTest, HidesTheUnsortedColumnWhenTight) {
    EXPECT_EQ(processListLayout(gridAt(1260, 480), 6, false).cpuWidth, 44);
    EXPECT_EQ(processListLayout(gridAt(1260, 480), 6, false).memoryWidth, 50);
    EXPECT_EQ(processListLayout(gridAt(1000, 480), 6, false).cpuWidth, 40);
    EXPECT_EQ(processListLayout(gridAt(1000, 480), 6, false).memoryWidth, 46);
    EXPECT_EQ(processListLayout(gridAt(740, 420), 6, false).memoryWidth, 0);
    EXPECT_EQ(processListLayout(gridAt(740, 420), 6, true).cpuWidth, 0);
    EXPECT_EQ(processListLayout(gridAt(740, 420), 6, true).memoryWidth, 46);
}

}  // namespace
}  // namespace kestro
