#include "ui/controls/text_label.h"

#include "tests/ui/controls/view_test.h"

namespace kestro {
namespace {

using TextLabelTest = ViewTest;

TEST_F(TextLabelTest, TreatsMarkupAndMnemonicsAsPlainText) {
    TextLabel label(QStringLiteral("<b>R&D</b>"));

    const QAccessibleInterface* interface = QAccessible::queryAccessibleInterface(&label);

    ASSERT_TRUE(interface);
    EXPECT_EQ(interface->text(QAccessible::Name), QStringLiteral("<b>R&D</b>"));
    EXPECT_EQ(interface->role(), QAccessible::StaticText);
    EXPECT_GT(label.sizeHint().width(), TextLabel(QStringLiteral("R&D")).sizeHint().width());
}

TEST_F(TextLabelTest, RepaintsNothingForTheSameText) {
    TextLabel label(QStringLiteral("42%"));
    label.show();
    QApplication::processEvents();
    PaintCounter paints(label);

    label.setText(QStringLiteral("42%"));
    label.setInk(KestroTheme::textPrimary);
    QApplication::processEvents();

    EXPECT_EQ(paints.count, 0);
}

TEST_F(TextLabelTest, RepaintsOnceForNewText) {
    TextLabel label(QStringLiteral("42%"));
    label.show();
    QApplication::processEvents();
    PaintCounter paints(label);

    label.setText(QStringLiteral("43%"));
    QApplication::processEvents();

    EXPECT_EQ(paints.count, 1);
}

TEST_F(TextLabelTest, KeepsTheReservedWidth) {
    TextLabel label(QStringLiteral("7%"));
    label.setFit(TextFit::value);

    label.reserveWidth(QStringLiteral("100%"));
    const int reserved = label.sizeHint().width();
    label.setText(QStringLiteral("100%"));

    EXPECT_EQ(label.sizeHint().width(), reserved);
}

TEST_F(TextLabelTest, FollowsThePaletteAtTheNextRedraw) {
    TextLabel label(QStringLiteral("MMMM"));
    TextStyle style = text_styles::displayFigure;
    style.ink = KestroTheme::accentCool;
    label.setStyle(style);
    label.resize(label.sizeHint());
    const QImage before = picture(label);

    settings_.themePalette.set(ThemePalette::obsidian);
    const QImage after = picture(label);

    EXPECT_NE(before, after);
}

}  // namespace
}  // namespace kestro
