#include "ui/controls/setting_row.h"

#include "tests/ui/controls/view_test.h"
#include "ui/controls/exclusive_group.h"

#include <utility>

namespace kestro {
namespace {

TEST(SettingRowGeometryTest, PutsACheckBeforeTheTitle) {
    const auto geometry = settingRowGeometry({400, 29}, {.mark = RowMark::check, .symbol = 13});

    EXPECT_EQ(geometry.mark, QRectF(12, 7, 15, 15));
    EXPECT_EQ(geometry.symbol, QRectF(37, 8, 13, 13));
    EXPECT_EQ(geometry.title, QRectF(60, 7, 328, 15));
}

TEST(SettingRowGeometryTest, PutsASwitchAfterTheTexts) {
    const auto geometry = settingRowGeometry({820, 44}, {.symbol = 15, .descriptionHeight = 14});

    EXPECT_EQ(geometry.symbol, QRectF(12, 14.5, 15, 15));
    EXPECT_EQ(geometry.mark, QRectF(776, 13, 32, 18));
    EXPECT_EQ(geometry.title, QRectF(39, 7.5, 725, 15));
    EXPECT_EQ(geometry.description, QRectF(39, 22.5, 725, 14));
}

TEST(SettingRowGeometryTest, ReservesTheTrailingRoom) {
    const auto geometry = settingRowGeometry({400, 52}, {.mark = RowMark::chosen, .trailingRoom = 70});

    EXPECT_EQ(geometry.mark.right(), 388);
    EXPECT_EQ(geometry.title.right(), 388 - 16 - 12 - 70);
}

TEST(SettingRowGeometryTest, HasNoNegativeWidths) {
    const auto geometry = settingRowGeometry({20, 29}, {.mark = RowMark::check, .symbol = 13, .trailingRoom = 90});

    EXPECT_EQ(geometry.title.width(), 0);
}

using SettingRowTest = ViewTest;

TEST_F(SettingRowTest, RespondsOverItsWholeWidth) {
    SettingRow row(RowMark::toggle, QStringLiteral("Float Dashboard On Top (Pinned)"), 40);
    row.resize(820, 40);
    std::vector<bool> told;
    row.onToggled([&](bool isOn) { told.push_back(isOn); });

    clickAt(row, {400, 35});
    clickAt(row, {2, 2});

    EXPECT_EQ(told, (std::vector{true, false}));
}

TEST_F(SettingRowTest, WaitsForItsOwnerWhenARequestMayBeRefused) {
    SettingRow row(RowMark::chosen, QStringLiteral("High Power"), 52);
    row.resize(820, 52);
    int asked = 0;
    row.onToggled([&](bool) { ++asked; });

    clickAt(row, {400, 20});

    EXPECT_EQ(asked, 1);
    EXPECT_FALSE(row.isOn());
}

TEST_F(SettingRowTest, ExposesTitleDescriptionAndState) {
    SettingRow row(RowMark::radio, QStringLiteral("Display & System"), 52);
    row.setDescription(QStringLiteral("Prevents both"));
    row.setOn(true);
    QAccessibleInterface* spoken = QAccessible::queryAccessibleInterface(&row);

    EXPECT_EQ(spoken->text(QAccessible::Name), QStringLiteral("Display & System"));
    EXPECT_EQ(spoken->text(QAccessible::Description), QStringLiteral("Prevents both"));
    EXPECT_EQ(spoken->role(), QAccessible::RadioButton);
    EXPECT_TRUE(spoken->state().checked);
}

TEST_F(SettingRowTest, RepaintsNothingForTheSameState) {
    SettingRow row(RowMark::check, QStringLiteral("Memory"), 29);
    row.setOn(true);
    row.move(300, 300);  // away from the pointer
    row.show();
    QApplication::processEvents();
    PaintCounter paints(row);

    row.setOn(true);
    QApplication::processEvents();

    EXPECT_EQ(paints.count, 0);
}

class ExclusiveGroupTest : public ViewTest {
protected:
    ExclusiveGroupTest() {
        for (int i = 0; i < 3; ++i) {
            rows_.push_back(new SettingRow(RowMark::radio, QString::number(i), 46, &window_));
            rows_.back()->move(0, 46 * i);
            rows_.back()->onToggled([this, i](bool) { asked_.push_back(i); });
        }
        group_ = new ExclusiveGroup({rows_.begin(), rows_.end()}, &window_);
        window_.show();
    }

    QWidget window_;
    std::vector<SettingRow*> rows_;
    ExclusiveGroup* group_ = nullptr;
    std::vector<int> asked_;
};

TEST_F(ExclusiveGroupTest, IsASingleTabStop) {
    group_->setChosen(1);

    EXPECT_FALSE(rows_[0]->focusPolicy() & Qt::TabFocus);
    EXPECT_TRUE(rows_[1]->focusPolicy() & Qt::TabFocus);
    EXPECT_FALSE(rows_[2]->focusPolicy() & Qt::TabFocus);
}

TEST_F(ExclusiveGroupTest, KeepsATabStopWhenNoneIsChosen) {
    group_->setChosen(-1);

    EXPECT_TRUE(rows_[0]->focusPolicy() & Qt::TabFocus);
}

TEST_F(ExclusiveGroupTest, ChoosesTheNeighbourWithTheArrows) {
    press(*rows_[0], Qt::Key_Down);
    press(*rows_[1], Qt::Key_Right);
    press(*rows_[2], Qt::Key_Down);
    press(*rows_[2], Qt::Key_Up);

    EXPECT_EQ(asked_, (std::vector{1, 2, 1}));
}

TEST_F(ExclusiveGroupTest, OnlyMovesTheFocusWhenChoosingIsCostly) {
    ExclusiveGroup group({rows_.begin(), rows_.end()}, nullptr, GroupArrows::moveFocus);
    delete std::exchange(group_, nullptr);
    window_.activateWindow();
    QApplication::processEvents();
    rows_[0]->setFocus(Qt::TabFocusReason);

    press(*rows_[0], Qt::Key_Down);
    press(*rows_[1], Qt::Key_Down);
    EXPECT_EQ(window_.focusWidget(), rows_[2]);
    EXPECT_TRUE(rows_[2]->showsFocus());
    EXPECT_TRUE(asked_.empty());

    press(*rows_[2], Qt::Key_Space);
    EXPECT_EQ(asked_, (std::vector{2}));
}

TEST_F(ExclusiveGroupTest, MovesTheTabStopWithTheFocusAndRestoresIt) {
    ExclusiveGroup group({rows_.begin(), rows_.end()}, nullptr, GroupArrows::moveFocus);
    delete std::exchange(group_, nullptr);
    group.setChosen(1);
    SettingRow elsewhere(RowMark::check, QStringLiteral("Elsewhere"), 46, &window_);
    elsewhere.show();
    window_.activateWindow();
    QApplication::processEvents();
    rows_[1]->setFocus(Qt::TabFocusReason);

    press(*rows_[1], Qt::Key_Up);
    EXPECT_TRUE(rows_[0]->focusPolicy() & Qt::TabFocus);
    EXPECT_FALSE(rows_[1]->focusPolicy() & Qt::TabFocus);

    elsewhere.setFocus(Qt::TabFocusReason);
    EXPECT_FALSE(rows_[0]->focusPolicy() & Qt::TabFocus);
    EXPECT_TRUE(rows_[1]->focusPolicy() & Qt::TabFocus);
}

}  // namespace
}  // namespace kestro
