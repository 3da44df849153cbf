#include "ui/widgets/core_matrix_view.h"

#include "tests/ui/controls/view_test.h"

namespace kestro {
namespace {

std::vector<CoreLoad> cores(int count, double load = 17) {
    std::vector<CoreLoad> made;
    for (int i = 0; i < count; ++i) {
        made.push_back({i, i < count / 2 ? "Super" : "Perf", i < count / 2, load});
    }
    return made;
}

TEST(CoreMatrixLayoutTest, HasThreeColumnsWithGapsOfSix) {
    const CoreMatrixLayout layout = coreMatrixLayout(12, {204, 118}, false);

    EXPECT_EQ(layout.columns, 3);
    EXPECT_EQ(layout.rows, 4);
    EXPECT_EQ(layout.gap, 6);
    EXPECT_EQ(layout.cellWidth, 64);
    EXPECT_EQ(layout.cellHeight, 25);
    EXPECT_EQ(layout.detail, CoreCellDetail::full);
    EXPECT_EQ(layout.cell(4), QRectF(70, 31, 64, 25));
}

TEST(CoreMatrixLayoutTest, HasTwoColumnsWithGapsOfFourWhenCompact) {
    const CoreMatrixLayout layout = coreMatrixLayout(12, {124, 110}, true);

    EXPECT_EQ(layout.columns, 2);
    EXPECT_EQ(layout.gap, 4);
    EXPECT_EQ(layout.cellWidth, 60);
    EXPECT_EQ(layout.cellHeight, 15);
    EXPECT_EQ(layout.detail, CoreCellDetail::small);
}

TEST(CoreMatrixLayoutTest, LimitsCellsToAHeightOf44) {
    EXPECT_EQ(coreMatrixLayout(3, {204, 400}, false).cellHeight, 44);
    EXPECT_EQ(coreMatrixLayout(1, {204, 400}, false).rows, 1);
}

TEST(CoreMatrixLayoutTest, DropsTheTextsOfLowCells) {
    EXPECT_EQ(coreMatrixLayout(2, {204, 20}, true).detail, CoreCellDetail::full);
    EXPECT_EQ(coreMatrixLayout(2, {204, 19}, true).detail, CoreCellDetail::small);
    EXPECT_EQ(coreMatrixLayout(2, {204, 12}, true).detail, CoreCellDetail::small);
    EXPECT_EQ(coreMatrixLayout(2, {204, 11}, true).detail, CoreCellDetail::fill);
}

TEST(CoreMatrixLayoutTest, FitsAnyNumberOfCores) {
    for (int count = 1; count <= 256; ++count) {
        for (const QSizeF area : {QSizeF(205.6, 150), QSizeF(121.6, 114), QSizeF(164.8, 60), QSizeF(205.6, 600)}) {
            for (const bool isCompact : {false, true}) {
                const CoreMatrixLayout layout = coreMatrixLayout(count, area, isCompact);
                const QRectF last = layout.cell(count - 1);
                ASSERT_LE(last.bottom(), area.height() + 0.001) << count;
                ASSERT_LE(layout.cell(layout.columns - 1).right(), area.width() + 0.001) << count;
                ASSERT_GE(layout.cellWidth, 10) << count;
                ASSERT_GT(layout.cellHeight, 0) << count;
            }
        }
    }
}

TEST(CoreMatrixLayoutTest, IsEmptyWithoutCoresOrRoom) {
    EXPECT_EQ(coreMatrixLayout(0, {200, 100}, false), CoreMatrixLayout{});
    EXPECT_EQ(coreMatrixLayout(8, {200, 0}, false), CoreMatrixLayout{});
    EXPECT_EQ(coreMatrixLayout(8, {-5, 10}, false), CoreMatrixLayout{});
}

class CoreMatrixViewTest : public ViewTest {
protected:
    CoreMatrixViewTest() : view_(false) { view_.setGeometry(300, 300, 204, 118); }

    CoreMatrixView view_;
};

TEST_F(CoreMatrixViewTest, ExposesEachCore) {
    view_.setCores(cores(12));
    QAccessibleInterface* spoken = QAccessible::queryAccessibleInterface(&view_);

    ASSERT_EQ(spoken->childCount(), 12);
    EXPECT_EQ(spoken->child(3)->text(QAccessible::Name), QStringLiteral("Core 3, 17 percent"));
}

TEST_F(CoreMatrixViewTest, GivesTheKernelsNumberOfACellInItsHelp) {
    std::vector<CoreLoad> loads = cores(12);
    loads[4].kernelNumber = 9;
    loads[5].kernelNumber = 0;
    loads[5].isOnline = false;
    view_.setCores(loads);

    send(view_, QEvent::MouseMove, QPointF(100, 40), Qt::NoButton);
    EXPECT_EQ(view_.help(), QStringLiteral("CPU 9"));
    send(view_, QEvent::MouseMove, QPointF(180, 40), Qt::NoButton);
    EXPECT_EQ(view_.help(), QStringLiteral("CPU 0, offline"));
    send(view_, QEvent::MouseMove, QPointF(10, 10), Qt::NoButton);
    EXPECT_EQ(view_.help(), QStringLiteral("CPU 0"));

    QAccessibleInterface* spoken = QAccessible::queryAccessibleInterface(&view_);
    EXPECT_EQ(spoken->child(4)->text(QAccessible::Name), QStringLiteral("Core 4, 17 percent"));
    EXPECT_EQ(spoken->child(4)->text(QAccessible::Description), QStringLiteral("CPU 9"));
    EXPECT_EQ(spoken->child(5)->text(QAccessible::Name), QStringLiteral("Core 5, offline"));
}

TEST_F(CoreMatrixViewTest, SurvivesAChangeOfTheNumberOfCores) {
    view_.setCores(cores(12));
    QAccessibleInterface* last = QAccessible::queryAccessibleInterface(&view_)->child(11);

    view_.setCores(cores(2));

    EXPECT_FALSE(last->isValid());
    EXPECT_EQ(last->text(QAccessible::Name), QString());
    EXPECT_EQ(QAccessible::queryAccessibleInterface(&view_)->childCount(), 2);
}

TEST_F(CoreMatrixViewTest, AcceptsNewLoadsWithoutRoomToShowThem) {
    view_.setGeometry(300, 300, 204, 0);
    view_.setCores(cores(12, 17));

    view_.setCores(cores(12, 83));
    view_.resize(204, 118);

    QAccessibleInterface* spoken = QAccessible::queryAccessibleInterface(&view_);
    ASSERT_EQ(spoken->childCount(), 12);
    EXPECT_EQ(spoken->child(3)->text(QAccessible::Name), QStringLiteral("Core 3, 83 percent"));
}

TEST_F(CoreMatrixViewTest, PaintsABusyCoreInTheCriticalColour) {
    auto busy = cores(1, 90);
    view_.setCores(busy);
    const QRgb at90 = picture(view_).pixel(20, 43);
    busy[0].usagePercentage = 89.9;
    view_.setCores(busy);

    EXPECT_EQ(at90, KestroTheme::accentCritical().rgba());
    EXPECT_NE(picture(view_).pixel(20, 43), KestroTheme::accentCritical().rgba());
}

TEST_F(CoreMatrixViewTest, PaintsTheSecondClusterFainter) {
    std::vector<CoreLoad> both = cores(2, 80);
    view_.setCores(both);

    const QImage image = picture(view_);

    EXPECT_EQ(qAlpha(image.pixel(20, 43)), 255);
    EXPECT_LT(qAlpha(image.pixel(90, 43)), 200);
}

TEST_F(CoreMatrixViewTest, RepaintsOnlyTheCoreThatChanged) {
    view_.setCores(cores(12));
    view_.show();
    QApplication::processEvents();
    PaintedRegion region(view_);

    auto changed = cores(12);
    changed[4].usagePercentage = 60;
    view_.setCores(changed);
    QApplication::processEvents();

    EXPECT_EQ(region.painted.boundingRect(), QRect(70, 31, 64, 25));
}

}  // namespace
}  // namespace kestro
