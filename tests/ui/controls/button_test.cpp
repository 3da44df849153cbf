#include "ui/controls/button.h"

#include "tests/ui/controls/view_test.h"

#include <QPointer>

namespace kestro {
namespace {

TEST(ButtonGeometryTest, CentresASymbolAlone) {
    const ButtonGeometry geometry = buttonGeometry({28, 28}, {.symbol = 11}, false);

    EXPECT_EQ(geometry.symbol, QRectF(8.5, 8.5, 11, 11));
    EXPECT_TRUE(geometry.text.isEmpty());
    EXPECT_TRUE(geometry.trailingSymbol.isEmpty());
}

TEST(ButtonGeometryTest, CentresSymbolTextAndTrailingSymbol) {
    const ButtonParts parts{.symbol = 10, .text = 40, .trailingSymbol = 8, .padding = 8, .gap = 5};

    const ButtonGeometry geometry = buttonGeometry({100, 24}, parts, false);

    EXPECT_EQ(geometry.symbol, QRectF(16, 7, 10, 10));
    EXPECT_EQ(geometry.text, QRectF(31, 0, 40, 24));
    EXPECT_EQ(geometry.trailingSymbol, QRectF(76, 8, 8, 8));
}

TEST(ButtonGeometryTest, SpreadsToBothEdges) {
    const ButtonParts parts{.symbol = 8, .text = 60, .trailingSymbol = 7, .padding = 2, .gap = 5};

    const ButtonGeometry geometry = buttonGeometry({302, 22}, parts, true);

    EXPECT_EQ(geometry.symbol.left(), 2);
    EXPECT_EQ(geometry.text.left(), 15);
    EXPECT_EQ(geometry.trailingSymbol.right(), 300);
}

TEST(ButtonGeometryTest, GivesLongTextTheRemainingWidth) {
    const ButtonParts parts{.symbol = 10, .text = 400, .padding = 12, .gap = 6};

    const ButtonGeometry geometry = buttonGeometry({120, 28}, parts, false);

    EXPECT_EQ(geometry.symbol.left(), 12);
    EXPECT_EQ(geometry.text, QRectF(28, 0, 80, 28));
}

TEST(StateOpacityTest, MovesFromRestThroughHoverToPressed) {
    const StateOpacity opacity{0.04, 0.09, 0.02};

    EXPECT_DOUBLE_EQ(opacity.at(0, 0), 0.04);
    EXPECT_DOUBLE_EQ(opacity.at(1, 0), 0.09);
    EXPECT_DOUBLE_EQ(opacity.at(1, 1), 0.02);
    EXPECT_DOUBLE_EQ(opacity.at(0.5, 0), 0.065);
}

class ButtonTest : public ViewTest {
protected:
    ButtonTest() : button_(ButtonKind::regular) {
        button_.setText(QStringLiteral("Deactivate"));
        button_.onClick([this] { ++clicks_; });
        button_.resize(button_.sizeHint());
    }

    Button button_;
    int clicks_ = 0;
};

TEST_F(ButtonTest, ClicksOnPressAndReleaseInside) {
    clickAt(button_, {10, 10});

    EXPECT_EQ(clicks_, 1);
}

TEST_F(ButtonTest, DoesNotClickWhenReleasedOutside) {
    send(button_, QEvent::MouseButtonPress, {10, 10}, Qt::LeftButton);
    send(button_, QEvent::MouseMove, {10, 100}, Qt::LeftButton);
    send(button_, QEvent::MouseButtonRelease, {10, 100}, Qt::NoButton);

    EXPECT_EQ(clicks_, 0);
}

TEST_F(ButtonTest, ClicksOnSpaceAndEnter) {
    press(button_, Qt::Key_Space);
    press(button_, Qt::Key_Return);
    press(button_, Qt::Key_Enter);
    press(button_, Qt::Key_A);

    EXPECT_EQ(clicks_, 3);
}

TEST_F(ButtonTest, DoesNothingWhileDisabled) {
    button_.setEnabled(false);

    clickAt(button_, {10, 10});
    press(button_, Qt::Key_Space);

    EXPECT_EQ(clicks_, 0);
}

TEST_F(ButtonTest, IsDimmedAsAWholeWhileDisabled) {
    Button prominent(ButtonKind::prominent);
    prominent.setText(QStringLiteral("Activate Now"));
    prominent.resize(prominent.sizeHint());
    const int enabled = qAlpha(picture(prominent).pixel(3, 14));

    prominent.setEnabled(false);

    EXPECT_EQ(enabled, 255);
    EXPECT_NEAR(qAlpha(picture(prominent).pixel(3, 14)), 255 * 0.38, 1.5);
}

TEST_F(ButtonTest, ChangesItsFillWithItsState) {
    const auto fill = [this] { return qAlpha(picture(button_).pixel(4, 14)) / 255.0; };
    const double rest = fill();
    hoverAt(button_, {10, 10});
    const double hovered = fill();
    send(button_, QEvent::MouseButtonPress, {10, 10}, Qt::LeftButton);

    EXPECT_NEAR(rest, 0.06, 0.005);
    EXPECT_NEAR(hovered, 0.11, 0.005);
    EXPECT_NEAR(fill(), 0.03, 0.005);
}

TEST_F(ButtonTest, MayBeDestroyedByItsClickAction) {
    const QPointer<Button> button(new Button(ButtonKind::chip));
    button->onClick([&button] { delete button.data(); });

    button->click();

    EXPECT_TRUE(button.isNull());
}

TEST_F(ButtonTest, HasAnAccessibleNameRoleAndState) {
    Button pin(ButtonKind::chip);
    pin.setSymbol(QStringLiteral("pin.fill"), 11);
    pin.setHelp(QStringLiteral("Pin Window on Top"));
    pin.setOn(true);
    QAccessibleInterface* spoken = QAccessible::queryAccessibleInterface(&pin);

    EXPECT_EQ(spoken->text(QAccessible::Name), QStringLiteral("Pin Window on Top"));
    EXPECT_EQ(spoken->text(QAccessible::Description), QString());
    EXPECT_EQ(spoken->role(), QAccessible::Button);
    EXPECT_TRUE(spoken->state().checked);
    EXPECT_EQ(QAccessible::queryAccessibleInterface(&button_)->text(QAccessible::Name),
              QStringLiteral("Deactivate"));
}

TEST_F(ButtonTest, CanBePressedByAssistiveTechnology) {
    auto* action = static_cast<QAccessibleActionInterface*>(
        QAccessible::queryAccessibleInterface(&button_)->interface_cast(QAccessible::ActionInterface));

    ASSERT_TRUE(action->actionNames().contains(QAccessibleActionInterface::pressAction()));
    action->doAction(QAccessibleActionInterface::pressAction());

    EXPECT_EQ(clicks_, 1);
}

TEST_F(ButtonTest, DerivesItsSizeFromItsKind) {
    Button chip(ButtonKind::chip);
    chip.setSquare(24);

    EXPECT_EQ(chip.sizeHint(), QSize(24, 24));
    EXPECT_EQ(button_.sizeHint().height(), 28);
    EXPECT_GE(button_.minimumSizeHint().width(), 22);
}

}  // namespace
}  // namespace kestro
