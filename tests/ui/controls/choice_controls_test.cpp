#include "tests/ui/controls/view_test.h"
#include "ui/controls/indicators.h"
#include "ui/controls/segmented_choice.h"
#include "ui/controls/slider.h"
#include "ui/controls/tab_strip.h"
#include "ui/controls/toggle_switch.h"
#include "ui/theme/color_mix.h"

#include <limits>

namespace kestro {
namespace {

TEST(SegmentAreasTest, HaveEqualSizesWithPaddingAndGapsOfTwo) {
    const auto areas = segmentAreas({820, 34}, 4);

    ASSERT_EQ(areas.size(), 4U);
    EXPECT_EQ(areas[0], QRectF(2, 2, 202.5, 30));
    EXPECT_EQ(areas[1].left(), 206.5);
    EXPECT_EQ(areas[3].right(), 818);
}

TEST(SliderRangeTest, RoundsToTheNearestStep) {
    const SliderRange cutoff{5, 50, 5};

    EXPECT_EQ(cutoff.nearest(22), 20);
    EXPECT_EQ(cutoff.nearest(23), 25);
    EXPECT_EQ(cutoff.nearest(-100), 5);
    EXPECT_EQ(cutoff.nearest(1e9), 50);
    EXPECT_EQ(cutoff.nearest(std::numeric_limits<double>::quiet_NaN()), 5);
}

TEST(SliderRangeTest, ReachesAMaximumBetweenSteps) {
    const SliderRange rpm{1200, 7345, 100};

    EXPECT_EQ(rpm.nearest(7345), 7345);
    EXPECT_EQ(rpm.nearest(7290), 7300);
}

TEST(SliderRangeTest, SnapsToTheNextStepFromInBetween) {
    const SliderRange rpm{1350, 7300, 100};

    EXPECT_EQ(rpm.stepped(6000, 1), 6050);
    EXPECT_EQ(rpm.stepped(6000, -1), 5950);
    EXPECT_EQ(rpm.stepped(6050, 1), 6150);
    EXPECT_EQ(rpm.stepped(6000, 5), 6450);
    EXPECT_EQ(rpm.stepped(7300, -1), 7250);
    EXPECT_EQ(rpm.stepped(7250, 1), 7300);
    EXPECT_EQ((SliderRange{0, 10, 0.1}.stepped(0.1 + 0.2, 1)), 0.4);
}

TEST(SliderRangeTest, HasOnlyItsMinimumWhenEmpty) {
    const SliderRange empty{10, 10, 1};

    EXPECT_EQ(empty.nearest(40), 10);
    EXPECT_EQ(empty.fraction(40), 0);
}

TEST(SliderGeometryTest, KeepsTheKnobInside) {
    const SliderRange range{0, 100, 1};

    EXPECT_DOUBLE_EQ(sliderKnobX(range, 0, 118), 7);
    EXPECT_DOUBLE_EQ(sliderKnobX(range, 50, 118), 59);
    EXPECT_DOUBLE_EQ(sliderKnobX(range, 100, 118), 111);
    EXPECT_EQ(sliderValueAt(range, 59, 118), 50);
    EXPECT_EQ(sliderValueAt(range, -20, 118), 0);
    EXPECT_EQ(sliderValueAt(range, 500, 118), 100);
}

TEST(SwitchGeometryTest, MovesTheKnobFromEdgeToEdge) {
    const QRectF area(0, 0, 32, 18);

    EXPECT_EQ(switchKnob(area, 0), QRectF(2, 2, 14, 14));
    EXPECT_EQ(switchKnob(area, 1), QRectF(16, 2, 14, 14));
}

class ChoiceTest : public ViewTest {};

TEST_F(ChoiceTest, PutsADarkKnobOnALightAccent) {
    settings_.themePalette.set(ThemePalette::monolith);
    EXPECT_EQ(markOn(KestroTheme::accentCool()), KestroTheme::ground());

    settings_.themePalette.set(ThemePalette::cryogenic);
    EXPECT_EQ(markOn(KestroTheme::accentCool()), QColor(Qt::white));
}

TEST_F(ChoiceTest, SwitchReportsOnlyUserChanges) {
    ToggleSwitch toggle;
    toggle.resize(toggle.sizeHint());
    std::vector<bool> told;
    toggle.onToggled([&](bool isOn) { told.push_back(isOn); });

    toggle.setOn(true);
    EXPECT_TRUE(told.empty());
    clickAt(toggle, {5, 11});
    press(toggle, Qt::Key_Space);

    EXPECT_EQ(told, (std::vector{false, true}));
    EXPECT_GE(toggle.height(), 22);
}

TEST_F(ChoiceTest, SwitchExposesItsState) {
    ToggleSwitch toggle;
    toggle.setAccessibleName(QStringLiteral("Fans Linked"));
    toggle.setOn(true);
    QAccessibleInterface* spoken = QAccessible::queryAccessibleInterface(&toggle);

    EXPECT_EQ(spoken->role(), QAccessible::CheckBox);
    EXPECT_EQ(spoken->text(QAccessible::Name), QStringLiteral("Fans Linked"));
    EXPECT_TRUE(spoken->state().checked);
}

class SliderTest : public ViewTest {
protected:
    SliderTest() : slider_({5, 50, 5}) {
        slider_.resize(118, 22);
        slider_.setValue(20);
        slider_.onChanged([this](double value) { told_.push_back(value); });
    }

    Slider slider_;
    std::vector<double> told_;
};

TEST_F(SliderTest, MovesOneStepWithArrowsAndFiveWithPageKeys) {
    press(slider_, Qt::Key_Right);
    press(slider_, Qt::Key_Left);
    press(slider_, Qt::Key_PageUp);
    press(slider_, Qt::Key_Home);
    press(slider_, Qt::Key_End);
    press(slider_, Qt::Key_End);

    EXPECT_EQ(told_, (std::vector<double>{25, 20, 45, 5, 50}));
}

TEST_F(SliderTest, FollowsThePointer) {
    send(slider_, QEvent::MouseButtonPress, {59, 11}, Qt::LeftButton);
    send(slider_, QEvent::MouseMove, {300, 11}, Qt::LeftButton);
    send(slider_, QEvent::MouseButtonRelease, {300, 11}, Qt::NoButton);

    EXPECT_EQ(told_, (std::vector<double>{30, 50}));
}

TEST_F(SliderTest, DoesNotNotifyWhenSetByCode) {
    slider_.setValue(20);
    slider_.setValue(35);
    slider_.setRange({5, 30, 5});

    EXPECT_TRUE(told_.empty());
    EXPECT_EQ(slider_.value(), 30);
}

TEST_F(SliderTest, ShowsAValueBetweenStepsUnrounded) {
    slider_.setRange({1350, 7300, 100});
    slider_.setValue(6000);

    EXPECT_EQ(slider_.value(), 6000);
    EXPECT_EQ(slider_.accessibleInfo().value, QStringLiteral("6000"));
    EXPECT_EQ(slider_.focusArea().center().x(), sliderKnobX(slider_.range(), 6000, slider_.width()));
    press(slider_, Qt::Key_Right);
    slider_.setValue(6000);
    press(slider_, Qt::Key_Left);
    EXPECT_EQ(told_, (std::vector<double>{6050, 5950}));
}

TEST_F(SliderTest, CanSetTheEndThatTheValueIsBeyond) {
    slider_.setValueText([](double value) { return QString::number(value) + QLatin1Char('%'); });
    slider_.setValue(80);
    EXPECT_EQ(slider_.value(), 50);
    EXPECT_EQ(slider_.accessibleInfo().value, QStringLiteral("80%"));

    press(slider_, Qt::Key_End);
    press(slider_, Qt::Key_End);

    EXPECT_EQ(told_, (std::vector<double>{50}));
    EXPECT_EQ(slider_.accessibleInfo().value, QStringLiteral("50%"));
}

TEST_F(SliderTest, CanBeReadAndSetByAssistiveTechnology) {
    slider_.setValueText([](double value) { return QString::number(value) + QLatin1Char('%'); });
    QAccessibleInterface* spoken = QAccessible::queryAccessibleInterface(&slider_);

    QAccessibleValueInterface* value = spoken->valueInterface();
    ASSERT_TRUE(value);
    EXPECT_EQ(spoken->text(QAccessible::Value), QStringLiteral("20%"));
    EXPECT_EQ(value->maximumValue().toDouble(), 50);
    value->setCurrentValue(40);

    EXPECT_EQ(told_, (std::vector<double>{40}));
}

class SegmentedChoiceTest : public ViewTest {
protected:
    SegmentedChoiceTest()
        : choice_({{QStringLiteral("Top 5"), {}}, {QStringLiteral("Top 6"), {}}, {QStringLiteral("Top 8"), {}}},
                  28) {
        choice_.resize(300, 28);
        choice_.setChosen(1);
        choice_.onChosen([this](int index) { told_.push_back(index); });
    }

    SegmentedChoice choice_;
    std::vector<int> told_;
};

TEST_F(SegmentedChoiceTest, ChoosesByPointerAndArrows) {
    clickAt(choice_, {290, 14});
    press(choice_, Qt::Key_Left);
    press(choice_, Qt::Key_Home);
    press(choice_, Qt::Key_Left);
    press(choice_, Qt::Key_End);

    EXPECT_EQ(told_, (std::vector{2, 1, 0, 2}));
}

TEST_F(SegmentedChoiceTest, DoesNotNotifyForTheChosenSegment) {
    clickAt(choice_, {150, 14});
    choice_.setChosen(0);

    EXPECT_TRUE(told_.empty());
}

TEST_F(SegmentedChoiceTest, ShowsNoChoiceForAnUnknownIndex) {
    choice_.setChosen(7);

    EXPECT_EQ(choice_.chosen(), -1);
    EXPECT_NO_FATAL_FAILURE(picture(choice_));
}

TEST_F(SegmentedChoiceTest, ExposesEachSegment) {
    QAccessibleInterface* spoken = QAccessible::queryAccessibleInterface(&choice_);

    ASSERT_EQ(spoken->childCount(), 3);
    EXPECT_EQ(spoken->child(0)->text(QAccessible::Name), QStringLiteral("Top 5"));
    EXPECT_EQ(spoken->child(0)->role(), QAccessible::RadioButton);
    EXPECT_FALSE(spoken->child(0)->state().checked);
    EXPECT_TRUE(spoken->child(1)->state().checked);
    EXPECT_EQ(spoken->indexOfChild(spoken->child(2)), 2);
    EXPECT_EQ(spoken->child(1)->parent(), spoken);
    EXPECT_EQ(spoken->child(3), nullptr);
}

TEST_F(SegmentedChoiceTest, ChoosesByVerticalArrowsToo) {
    press(choice_, Qt::Key_Down);
    press(choice_, Qt::Key_Up);
    press(choice_, Qt::Key_Up);

    EXPECT_EQ(told_, (std::vector{2, 1, 0}));
}

TEST_F(SegmentedChoiceTest, ChoosesOnReleaseOverTheSameSegment) {
    send(choice_, QEvent::MouseButtonPress, {290, 14}, Qt::LeftButton);
    EXPECT_TRUE(told_.empty());
    send(choice_, QEvent::MouseButtonRelease, {10, 14}, Qt::NoButton);

    EXPECT_TRUE(told_.empty());
}

using TabStripTest = ViewTest;

TEST_F(TabStripTest, ChoosesOnPressAndByArrows) {
    TabStrip strip(
        {{QStringLiteral("Menu Bar"), {}}, {QStringLiteral("Power"), {}}, {QStringLiteral("Sensors"), {}}});
    strip.resize(300, TabStrip::fixedHeight);
    std::vector<int> told;
    strip.onChosen([&told](int index) { told.push_back(index); });

    send(strip, QEvent::MouseButtonPress, {290, 20}, Qt::LeftButton);
    send(strip, QEvent::MouseButtonRelease, {290, 20}, Qt::NoButton);
    press(strip, Qt::Key_Right);
    press(strip, Qt::Key_Left);
    press(strip, Qt::Key_Up);
    press(strip, Qt::Key_Home);
    press(strip, Qt::Key_End);

    EXPECT_EQ(told, (std::vector{2, 1, 0, 2}));
}

}  // namespace
}  // namespace kestro
