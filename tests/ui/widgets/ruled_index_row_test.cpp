#include "ui/widgets/ruled_index_row.h"

#include "tests/ui/controls/view_test.h"
#include "ui/widgets/load_bar.h"

namespace kestro {
namespace {

TEST(RuledIndexGeometryTest, PlacesTheRuleEightAboveTheBottom) {
    const auto geometry = ruledIndexGeometry({205, 28}, false, RowSpacing::regular);

    EXPECT_EQ(geometry.line, QRectF(0, 0, 205, 14));
    EXPECT_TRUE(geometry.detail.isEmpty());
    EXPECT_EQ(geometry.rule, QRectF(0, 20, 205, 2));
}

TEST(RuledIndexGeometryTest, PlacesTheRuleNineAboveTheBottomWithADetail) {
    const auto geometry = ruledIndexGeometry({205, 38}, true, RowSpacing::regular);

    EXPECT_EQ(geometry.detail, QRectF(0, 13, 205, 11));
    EXPECT_EQ(geometry.rule.top(), 29);
}

TEST(RuledIndexGeometryTest, PlacesTheRuleFiveAboveTheBottomOfLowRows) {
    EXPECT_EQ(ruledIndexGeometry({120, 23}, false, RowSpacing::regular).rule.top(), 18);
    EXPECT_EQ(ruledIndexGeometry({120, 24}, false, RowSpacing::regular).rule.top(), 16);
}

TEST(RuledIndexGeometryTest, PlacesTheRuleFourAboveTheBottomOfDenseRowsWithADetail) {
    EXPECT_EQ(ruledIndexGeometry({120, 30}, true, RowSpacing::dense).rule.top(), 26);
    EXPECT_EQ(ruledIndexGeometry({120, 30}, false, RowSpacing::dense).rule.top(), 22);
}

TEST(RuledIndexGeometryTest, KeepsTheRuleNearItsLabelInRoomyRows) {
    for (const double pitch : {28.0, 37.0, 40.0}) {
        EXPECT_EQ(ruledIndexGeometry({205, pitch}, false, RowSpacing::roomy).rule.top(), 18);
    }
    EXPECT_EQ(ruledIndexGeometry({205, 46}, true, RowSpacing::roomy).rule.top(), 28);
    EXPECT_EQ(ruledIndexGeometry({205, 17}, false, RowSpacing::roomy).rule.top(), 12);
}

class RuledIndexRowTest : public ViewTest {
protected:
    RuledIndexRowTest() : row_(false) { row_.setGeometry(300, 300, 205, 38); }

    static RuledIndexContent temperature() {
        return {QStringLiteral("SoC Junction Temp"), QStringLiteral("SoC Die"), QStringLiteral("52.4°C"),
                QStringLiteral("Die Average"), 0.5};
    }

    RuledIndexRow row_;
};

TEST_F(RuledIndexRowTest, ExposesLabelValueAndDetail) {
    row_.setContent(temperature());
    QAccessibleInterface* spoken = QAccessible::queryAccessibleInterface(&row_);

    EXPECT_EQ(spoken->text(QAccessible::Name), QStringLiteral("SoC Junction Temp, 52.4°C, Die Average"));
    RuledIndexContent plain = temperature();
    plain.detail.clear();
    row_.setContent(plain);
    EXPECT_EQ(spoken->text(QAccessible::Name), QStringLiteral("SoC Junction Temp, 52.4°C"));
}

TEST_F(RuledIndexRowTest, FillsTheRuleByItsFraction) {
    row_.setContent(temperature());

    const QImage image = picture(row_);

    EXPECT_EQ(image.pixel(50, 30), KestroTheme::accentCool().rgba());
    EXPECT_NEAR(qAlpha(image.pixel(150, 30)), 255 * 0.08, 2);
}

TEST_F(RuledIndexRowTest, DrawsAHairlineWithoutAFraction) {
    RuledIndexContent content = temperature();
    content.progressFraction = 0;
    row_.setContent(content);

    const QImage image = picture(row_);

    EXPECT_EQ(image.pixelColor(50, 30).alpha(), KestroTheme::hairline().alpha());
    EXPECT_EQ(qAlpha(image.pixel(50, 29)), 0);
    EXPECT_EQ(qAlpha(image.pixel(50, 31)), 0);
}

TEST_F(RuledIndexRowTest, UsesTheCompactLabelWhenCompact) {
    row_.setContent(temperature());
    const QImage full = picture(row_);

    row_.setCompact(true);

    EXPECT_NE(picture(row_), full);
}

TEST_F(RuledIndexRowTest, UsesTheShortLabelWhereTheLabelDoesNotFit) {
    RuledIndexContent content;
    content.label = QStringLiteral("Local IP");
    content.value = QStringLiteral("192.168.100.100");
    content.shortLabel = QStringLiteral("IP");
    RuledIndexContent brief = content;
    brief.label = content.shortLabel;
    brief.shortLabel.clear();
    const auto pictureOf = [this](const RuledIndexContent& shown) {
        row_.setContent(shown);
        return picture(row_);
    };

    EXPECT_NE(pictureOf(content), pictureOf(brief));
    row_.resize(121, 38);

    EXPECT_EQ(pictureOf(content), pictureOf(brief));
}

TEST_F(RuledIndexRowTest, RepaintsNothingForTheSameContent) {
    row_.setContent(temperature());
    row_.show();
    QApplication::processEvents();
    PaintCounter paints(row_);

    row_.setContent(temperature());
    QApplication::processEvents();
    EXPECT_EQ(paints.count, 0);
    RuledIndexContent warmer = temperature();
    warmer.value = QStringLiteral("52.5°C");
    row_.setContent(warmer);
    QApplication::processEvents();

    EXPECT_EQ(paints.count, 1);
}

TEST_F(RuledIndexRowTest, RepaintsOnlyTheValueThatChanged) {
    row_.setContent(temperature());
    row_.show();
    QApplication::processEvents();
    PaintedRegion paints(row_);
    RuledIndexContent warmer = temperature();
    warmer.value = QStringLiteral("52.5°C");

    row_.setContent(warmer);
    QApplication::processEvents();

    const QRect area = paints.painted.boundingRect();
    EXPECT_EQ(area.right(), row_.width() - 1);
    EXPECT_GT(area.left(), row_.width() - 60);
    EXPECT_LE(area.bottom(), 14);
}

TEST_F(RuledIndexRowTest, RepaintsTheLabelWhenTheValueTakesItsRoom) {
    row_.resize(110, 38);
    row_.setContent(temperature());
    row_.show();
    QApplication::processEvents();
    PaintedRegion paints(row_);
    RuledIndexContent hotter = temperature();
    hotter.value = QStringLiteral("102.5°C");

    row_.setContent(hotter);
    QApplication::processEvents();

    EXPECT_EQ(paints.painted.boundingRect().left(), 0);
}

TEST_F(RuledIndexRowTest, LoadBarRepaintsOnlyVisibleChanges) {
    LoadBar bar;
    bar.setGeometry(300, 300, 200, 4);
    bar.setFraction(0.24);
    bar.show();
    QApplication::processEvents();
    PaintCounter paints(bar);

    bar.setFraction(0.2401);
    QApplication::processEvents();
    EXPECT_EQ(paints.count, 0);
    bar.setFraction(0.25);
    QApplication::processEvents();

    EXPECT_EQ(paints.count, 1);
}

TEST_F(RuledIndexRowTest, LoadBarClampsItsFraction) {
    LoadBar bar;
    bar.resize(100, 4);
    bar.setFraction(7);
    EXPECT_EQ(picture(bar).pixel(97, 2), KestroTheme::accentCool().rgba());
    bar.setFraction(-1);
    EXPECT_LT(qAlpha(picture(bar).pixel(50, 2)), 20);
}

}  // namespace
}  // namespace kestro
