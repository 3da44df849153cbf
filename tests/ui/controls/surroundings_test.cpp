#include "tests/ui/controls/view_test.h"
#include "ui/controls/badge.h"
#include "ui/controls/option_tile.h"
#include "ui/controls/scroll_area.h"
#include "ui/controls/swatch.h"
#include "ui/controls/tab_strip.h"

#include <QScrollBar>

namespace kestro {
namespace {

TEST(TabAreasTest, HaveEqualWidthsWithGapsOfFour) {
    const auto areas = tabAreas({820, 44}, 7);

    ASSERT_EQ(areas.size(), 7U);
    EXPECT_DOUBLE_EQ(areas[0].width(), (820.0 - 24) / 7);
    EXPECT_DOUBLE_EQ(areas[1].left(), areas[0].right() + 4);
    EXPECT_NEAR(areas[6].right(), 820, 1e-9);
}

TEST(EdgeFadesTest, IndicateMoreContent) {
    EXPECT_EQ(edgeFades(0, 0), (EdgeFades{0, 0}));
    EXPECT_EQ(edgeFades(0, 100), (EdgeFades{0, 18}));
    EXPECT_EQ(edgeFades(40, 100), (EdgeFades{14, 18}));
    EXPECT_EQ(edgeFades(100, 100), (EdgeFades{14, 0}));
}

TEST(ScrollThumbTest, IsFiveWideAndFourFromTheEdge) {
    EXPECT_EQ(scrollThumb(14, 400, 0, 400), QRectF(5, 0, 5, 200));
    EXPECT_EQ(scrollThumb(14, 400, 400, 400), QRectF(5, 200, 5, 200));
}

TEST(ScrollThumbTest, IsAtLeastThirtyTwoLong) {
    EXPECT_EQ(scrollThumb(14, 400, 50'000, 100'000), QRectF(5, 184, 5, 32));
}

TEST(ScrollThumbTest, IsEmptyWhenNothingScrolls) {
    EXPECT_TRUE(scrollThumb(14, 400, 0, 0).isEmpty());
}

class SurroundingsTest : public ViewTest {};

TEST_F(SurroundingsTest, BadgeHasTheSizeOfItsKind) {
    EXPECT_EQ(Badge(BadgeKind::section, QStringLiteral("Nominal")).sizeHint().height(), 14);
    EXPECT_EQ(Badge(BadgeKind::settings, QStringLiteral("ACTIVE")).sizeHint().height(), 18);
    EXPECT_EQ(Badge(BadgeKind::dot, QStringLiteral("Nominal")).sizeHint(), QSize(6, 6));
}

TEST_F(SurroundingsTest, BadgeKeepsItsAccessibleNameWhenOnlyTheDotShows) {
    Badge badge(BadgeKind::dot);

    badge.setState(QStringLiteral("Critical"), KestroTheme::accentCritical);

    EXPECT_EQ(QAccessible::queryAccessibleInterface(&badge)->text(QAccessible::Name), QStringLiteral("Critical"));
}

TEST_F(SurroundingsTest, TabsCanBeChosenByPointerAndArrows) {
    TabStrip tabs({{QStringLiteral("A"), {}}, {QStringLiteral("B"), {}}, {QStringLiteral("C"), {}}});
    tabs.resize(308, 44);
    std::vector<int> told;
    tabs.onChosen([&](int index) { told.push_back(index); });

    clickAt(tabs, {150, 20});
    press(tabs, Qt::Key_Right);
    press(tabs, Qt::Key_Right);
    press(tabs, Qt::Key_Home);
    tabs.setChosen(2);
    tabs.setChosen(9);

    EXPECT_EQ(told, (std::vector{1, 2, 0}));
    EXPECT_EQ(tabs.chosen(), 2);
}

TEST_F(SurroundingsTest, TabsHaveThePageTabRole) {
    TabStrip tabs({{QStringLiteral("Menu Bar"), {}}, {QStringLiteral("Sensors"), {}}});
    QAccessibleInterface* spoken = QAccessible::queryAccessibleInterface(&tabs);

    ASSERT_EQ(spoken->childCount(), 2);
    EXPECT_EQ(spoken->child(1)->role(), QAccessible::PageTab);
    EXPECT_EQ(spoken->child(1)->text(QAccessible::Name), QStringLiteral("Sensors"));
    EXPECT_TRUE(spoken->child(0)->state().selected);
}

TEST_F(SurroundingsTest, SwatchShowsItsRingWhenChosen) {
    Swatch swatch(QStringLiteral("Velvet Lilac"), QColor(Qt::magenta));
    swatch.resize(swatch.sizeHint());
    const QPoint ring(swatch.width() / 2, 0);
    const int before = qAlpha(picture(swatch).pixel(ring));

    swatch.setOn(true);

    EXPECT_EQ(before, 0);
    EXPECT_GT(qAlpha(picture(swatch).pixel(ring)), 100);
    EXPECT_EQ(QAccessible::queryAccessibleInterface(&swatch)->text(QAccessible::Name),
              QStringLiteral("Velvet Lilac"));
}

TEST_F(SurroundingsTest, TileClipsItsPictureToItsOutline) {
    OptionTile tile(QStringLiteral("Header Band"), 86,
                    [](QPainter& painter, const QRectF& area) { painter.fillRect(area, Qt::red); });
    tile.resize(tile.sizeHint());

    const QImage image = picture(tile);

    EXPECT_LT(qAlpha(image.pixel(0, 0)), 100);
    EXPECT_EQ(image.pixelColor(90, 40), QColor(Qt::red));
    EXPECT_EQ(tile.sizeHint().height(), 86 + 26);
}

TEST_F(SurroundingsTest, TileHasAStrongerOutlineInHighContrast) {
    OptionTile tile(QStringLiteral("Header Band"), 86, [](QPainter&, const QRectF&) {});
    tile.resize(tile.sizeHint());
    const auto border = [&tile] { return qAlpha(picture(tile).pixel(90, 0)); };
    EXPECT_EQ(border(), KestroTheme::hairline().alpha());

    KestroTheme::setHighContrast(true);
    const int raised = border();
    const int strong = KestroTheme::hairlineStrong().alpha();
    KestroTheme::setHighContrast(false);

    EXPECT_EQ(raised, strong);
    EXPECT_NE(raised, border());
}

TEST_F(SurroundingsTest, ScrollAreaScrollsTallerContent) {
    auto* content = new QWidget;
    content->setFixedHeight(900);
    ScrollArea area(content);
    area.resize(300, 400);
    area.show();
    QApplication::processEvents();

    EXPECT_EQ(area.verticalScrollBar()->maximum(), 500);
    EXPECT_EQ(content->width(), 300);
}

/// A widget filled with one colour.
class Filled : public QWidget {
public:
    explicit Filled(const QColor& color, QWidget* parent = nullptr) : QWidget(parent), color_(color) {}

protected:
    void paintEvent(QPaintEvent*) override { QPainter(this).fillRect(rect(), color_); }

private:
    QColor color_;
};

TEST_F(SurroundingsTest, ScrollAreaFadesItsContentIntoTheSurfaceBehind) {
    Filled surface(QColor(255, 0, 0, 240));
    surface.resize(300, 400);
    auto* content = new Filled(Qt::blue);
    content->setFixedHeight(900);
    ScrollArea area(content, &surface);
    area.resize(300, 400);
    surface.show();
    QApplication::processEvents();
    const auto column = [&surface](int y) { return picture(surface).pixelColor(100, y); };

    EXPECT_EQ(column(0), QColor(Qt::blue));
    EXPECT_EQ(column(381), QColor(Qt::blue));
    EXPECT_NEAR(column(391).blue(), 128, 8);
    EXPECT_NEAR(column(399).alpha(), 240, 2);
    EXPECT_LT(column(399).blue(), 12);
    area.verticalScrollBar()->setValue(500);
    EXPECT_LT(column(0).blue(), 14);
    EXPECT_EQ(column(399), QColor(Qt::blue));
}

TEST_F(SurroundingsTest, ScrollAreaRepaintsOnlyWhatChanges) {
    Filled surface(Qt::red);
    surface.resize(300, 400);
    auto* content = new QWidget;
    content->setFixedHeight(900);
    Filled changing(Qt::blue, content);
    changing.setGeometry(0, 100, 300, 20);
    Filled other(Qt::green, content);
    other.setGeometry(0, 200, 300, 20);
    ScrollArea area(content, &surface);
    area.resize(300, 400);
    surface.show();
    QApplication::processEvents();
    PaintCounter paints(other);

    changing.update();
    QApplication::processEvents();

    EXPECT_EQ(paints.count, 0);
    changing.setParent(nullptr);
    other.setParent(nullptr);
}

TEST_F(SurroundingsTest, ScrollAreaAppliesItsContentOpacity) {
    Filled surface(Qt::red);
    surface.resize(300, 400);
    ScrollArea area(new Filled(Qt::blue), &surface);
    area.resize(300, 400);
    surface.show();
    QApplication::processEvents();
    const auto middle = [&surface] { return picture(surface).pixelColor(100, 200); };

    area.setContentOpacity(0.5);
    EXPECT_NEAR(middle().blue(), 128, 3);
    EXPECT_NEAR(middle().red(), 127, 3);
    area.setContentOpacity(1);
    EXPECT_EQ(middle(), QColor(Qt::blue));
}

}  // namespace
}  // namespace kestro
