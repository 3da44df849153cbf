#include "ui/controls/composition.h"

#include "tests/ui/controls/view_test.h"

#include <QPointer>

namespace kestro {
namespace {

using CompositionTest = ViewTest;

TEST_F(CompositionTest, LaysOutARowFromLeftToRight) {
    TextLabel* title = nullptr;
    Button* gear = nullptr;
    const std::unique_ptr<QWidget> header(row(Spacing(8), symbol("gauge.with.needle", 12),
                                              text("KESTRO").style(text_styles::wordmarkPopover).into(title),
                                              spacer(), chip(symbol("gearshape", 10)).help("Settings"))
                                              .release());
    header->resize(302, 24);
    header->show();
    gear = header->findChild<Button*>();

    ASSERT_TRUE(title);
    ASSERT_TRUE(gear);
    EXPECT_EQ(header->findChild<SymbolView*>()->geometry(), QRect(0, 6, 12, 12));
    EXPECT_EQ(title->x(), 20);
    EXPECT_EQ(title->style(), text_styles::wordmarkPopover);
    EXPECT_EQ(gear->geometry(), QRect(278, 0, 24, 24));
    EXPECT_EQ(gear->help(), QStringLiteral("Settings"));
}

TEST_F(CompositionTest, LaysOutAColumnFromTopToBottom) {
    TextLabel* lower = nullptr;
    const std::unique_ptr<QWidget> block(
        column(Insets{4, 3, 4, 3}, text("Upper"), space(5), text("Lower").into(lower), spacer()).release());
    block->resize(100, 80);
    block->show();

    EXPECT_EQ(lower->geometry(), QRect(4, 22, 92, 14));
}

TEST_F(CompositionTest, OwnsItsElements) {
    Button* inner = nullptr;
    QWidget* outer = row(column(chip("Inner").into(inner))).release();
    const QPointer<Button> watched(inner);

    delete outer;

    EXPECT_FALSE(watched);
}

TEST_F(CompositionTest, AcceptsStandardStringsAndInvalidUTF8) {
    const std::unique_ptr<TextLabel> fine(text(std::string("Cool")).release());
    const std::unique_ptr<TextLabel> broken(text(std::string("a\xff")).release());

    EXPECT_EQ(fine->text(), QStringLiteral("Cool"));
    EXPECT_EQ(broken->text(), QStringLiteral("a") + QChar(QChar::ReplacementCharacter));
}

TEST_F(CompositionTest, ReservesTheWidthOfTheWidestValue) {
    const std::unique_ptr<TextLabel> value(text("7%").value("100%").release());

    EXPECT_EQ(value->sizeHint().width(), std::ceil(textWidth(QStringLiteral("100%"), value->style())));
    EXPECT_EQ(value->minimumSizeHint(), value->sizeHint());
}

}  // namespace
}  // namespace kestro
