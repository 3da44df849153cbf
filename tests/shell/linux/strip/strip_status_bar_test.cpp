#include "shell/linux/strip/strip_status_bar.h"

#include "shell/linux/strip/strip_item_view.h"
#include "shell/linux/strip/strip_window.h"
#include "tests/shell/linux/bound_theme.h"
#include "tests/shell/linux/bus_client.h"
#include "ui/controls/view_accessible.h"

#include <QAccessible>
#include <QApplication>
#include <QMouseEvent>
#include <QScreen>

#include <gtest/gtest.h>

namespace kestro {
namespace {

StatusContent titled(const char* text, const char* widest = " RAM 100%") {
    StatusContent content;
    content.symbol = StatusSymbol{QStringLiteral("waveform.path.ecg"), QStringLiteral("Kestro"), 12};
    content.title.text = QString::fromUtf8(text);
    content.widestTitle = QString::fromUtf8(widest);
    return content;
}

StripWindow* strip() {
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        if (auto* window = dynamic_cast<StripWindow*>(widget)) {
            return window;
        }
    }
    return nullptr;
}

StripItemView* viewOf(const char* identifier) {
    return dynamic_cast<StripItemView*>(strip()->findChild<QWidget*>(QString::fromUtf8(identifier)));
}

void click(QWidget& widget, Qt::MouseButton button, QPointF releasedAt = {5, 5},
           Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QMouseEvent press(QEvent::MouseButtonPress, QPointF(5, 5), widget.mapToGlobal(QPointF(5, 5)), button, button,
                      modifiers);
    QMouseEvent release(QEvent::MouseButtonRelease, releasedAt, widget.mapToGlobal(releasedAt), button,
                        Qt::NoButton, modifiers);
    QCoreApplication::sendEvent(&widget, &press);
    QCoreApplication::sendEvent(&widget, &release);
}

class StripStatusBarTest : public testing::Test {
protected:
    struct Click {
        StatusClick click;
        bool controlHeld;
        QRect anchor;
    };

    StatusItemHandlers recording() {
        return {[this](StatusClick click, bool controlHeld, const QRect& anchor) {
                    clicks.push_back({click, controlHeld, anchor});
                },
                {}};
    }

    BoundTheme theme;
    std::vector<Click> clicks;
    StripStatusBar bar;
};

TEST_F(StripStatusBarTest, ShowsItsItemsAtTheTopRightOfTheScreen) {
    const auto main = bar.createItem(QStringLiteral("kestro-main"), {});
    const auto cooling = bar.createItem(QStringLiteral("kestro-cooling"), {});
    main->setContent(titled(" RAM 42%"));
    cooling->setContent(titled(" TURBO", ""));

    ASSERT_NE(strip(), nullptr);
    EXPECT_TRUE(strip()->isVisible());
    const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
    EXPECT_EQ(strip()->geometry().top(), screen.top() + 8);
    EXPECT_EQ(strip()->geometry().right(), screen.right() - 10);
    EXPECT_EQ(main->geometry().left(), cooling->geometry().right() + 1);
    EXPECT_EQ(main->geometry().size(), viewOf("kestro-main")->size());
}

TEST_F(StripStatusBarTest, IsNamedAfterTheReadoutOfTheFirstItem) {
    const auto item = bar.createItem(QStringLiteral("kestro-main"), {});
    const auto extra = bar.createItem(QStringLiteral("kestro-cooling"), {});
    auto content = titled(" RAM 42%");
    content.toolTip = QStringLiteral("Kestro: RAM 42%");

    item->setContent(content);
    extra->setContent(titled(" 14m"));

    EXPECT_EQ(strip()->windowTitle(), QStringLiteral("Kestro: RAM 42%"));
}

TEST_F(StripStatusBarTest, DisappearsWithItsLastItem) {
    auto main = bar.createItem(QStringLiteral("kestro-main"), {});
    auto extra = bar.createItem(QStringLiteral("kestro-cooling"), {});

    main.reset();
    EXPECT_TRUE(strip()->isVisible());
    extra.reset();

    EXPECT_EQ(strip(), nullptr);
}

TEST_F(StripStatusBarTest, ReportsWhenItCoversAnotherPartOfTheScreen) {
    std::vector<QRect> covered;
    bar.onOverlayChanged([&] { covered.push_back(bar.overlay()); });

    auto item = bar.createItem(QStringLiteral("kestro-main"), {});
    ASSERT_EQ(covered.size(), 1U);
    EXPECT_EQ(covered.back(), strip()->geometry());

    item->setContent(titled(" RAM 42%"));
    ASSERT_EQ(covered.size(), 2U);
    EXPECT_EQ(covered.back(), strip()->geometry());
    item->setContent(titled(" RAM 43%"));
    EXPECT_EQ(covered.size(), 2U);

    item.reset();
    ASSERT_EQ(covered.size(), 3U);
    EXPECT_TRUE(covered.back().isNull());
}

TEST_F(StripStatusBarTest, NeverTakesTheKeyboard) {
    const auto main = bar.createItem(QStringLiteral("kestro-main"), {});

    EXPECT_TRUE(strip()->windowFlags().testFlag(Qt::WindowDoesNotAcceptFocus));
    EXPECT_TRUE(strip()->windowFlags().testFlag(Qt::WindowStaysOnTopHint));
    EXPECT_EQ(viewOf("kestro-main")->focusPolicy(), Qt::NoFocus);
}

TEST_F(StripStatusBarTest, DoesNotShrinkWhileTheTextChanges) {
    const auto main = bar.createItem(QStringLiteral("kestro-main"), {});
    main->setContent(titled(" RAM 9%"));
    const int one = main->geometry().width();

    main->setContent(titled(" RAM 42%"));
    const int two = main->geometry().width();
    main->setContent(titled(" RAM 7%"));
    const int again = main->geometry().width();

    EXPECT_GT(two, one);
    EXPECT_EQ(again, two);
}

TEST_F(StripStatusBarTest, ShrinksForADifferentReadout) {
    const auto main = bar.createItem(QStringLiteral("kestro-main"), {});
    main->setContent(titled(" RAM 42% · CPU 18%", " RAM 100% · CPU 100%"));
    const int wide = main->geometry().width();

    main->setContent(titled(" RAM 42%"));

    EXPECT_LT(main->geometry().width(), wide);
}

TEST_F(StripStatusBarTest, ReportsClicksWithTheirAnchor) {
    const auto main = bar.createItem(QStringLiteral("kestro-main"), recording());
    main->setContent(titled(" RAM 42%"));

    click(*viewOf("kestro-main"), Qt::LeftButton);
    click(*viewOf("kestro-main"), Qt::RightButton);
    click(*viewOf("kestro-main"), Qt::LeftButton, {5, 5}, Qt::ControlModifier);

    ASSERT_TRUE(waitUntil([&] { return clicks.size() == 3; }));
    EXPECT_EQ(clicks[0].click, StatusClick::primary);
    EXPECT_FALSE(clicks[0].controlHeld);
    EXPECT_EQ(clicks[0].anchor, main->geometry());
    EXPECT_EQ(clicks[1].click, StatusClick::secondary);
    EXPECT_TRUE(clicks[2].controlHeld);
}

TEST_F(StripStatusBarTest, IgnoresOtherButtonsAndReleasesElsewhere) {
    const auto main = bar.createItem(QStringLiteral("kestro-main"), recording());
    main->setContent(titled(" RAM 42%"));

    click(*viewOf("kestro-main"), Qt::LeftButton, {5, 500});
    click(*viewOf("kestro-main"), Qt::MiddleButton);
    click(*viewOf("kestro-main"), Qt::RightButton);

    ASSERT_TRUE(waitUntil([&] { return !clicks.empty(); }));
    ASSERT_EQ(clicks.size(), 1U);
    EXPECT_EQ(clicks[0].click, StatusClick::secondary);
}

TEST_F(StripStatusBarTest, OpensTheMenuBelowTheItemWithoutAClickHandler) {
    const auto extra =
        bar.createItem(QStringLiteral("kestro-cooling"),
                       {{}, [] { return Menu{MenuEntry::header(QStringLiteral("Cooling & Power"))}; }});
    extra->setContent(titled(" TURBO"));

    click(*viewOf("kestro-cooling"), Qt::LeftButton);

    ASSERT_TRUE(waitUntil([] { return QApplication::activePopupWidget() != nullptr; }));
    EXPECT_GT(QApplication::activePopupWidget()->geometry().top(), extra->geometry().bottom());
}

TEST_F(StripStatusBarTest, AnItemMayBeDestroyedByItsOwnClick) {
    std::unique_ptr<StatusItem> item;
    bool isClicked = false;
    item = bar.createItem(QStringLiteral("kestro-main"), {[&](StatusClick, bool, const QRect&) {
                                                              item.reset();
                                                              isClicked = true;
                                                          },
                                                          {}});

    click(*viewOf("kestro-main"), Qt::LeftButton);

    EXPECT_TRUE(waitUntil([&] { return isClicked; }));
    EXPECT_EQ(strip(), nullptr);
}

TEST_F(StripStatusBarTest, SpeaksItsNameAndReadout) {
    installViewAccessibility();
    const auto main = bar.createItem(QStringLiteral("kestro-main"), recording());
    main->setContent(titled(" RAM 42%"));

    QAccessibleInterface* spoken = QAccessible::queryAccessibleInterface(viewOf("kestro-main"));

    ASSERT_NE(spoken, nullptr);
    EXPECT_EQ(spoken->role(), QAccessible::Button);
    EXPECT_EQ(spoken->text(QAccessible::Name), QStringLiteral("Kestro"));
    EXPECT_EQ(spoken->text(QAccessible::Description), QStringLiteral("RAM 42%"));
    spoken->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_TRUE(waitUntil([&] { return clicks.size() == 1; }));
}

TEST_F(StripStatusBarTest, SpeaksTheFiguresOfABareIcon) {
    installViewAccessibility();
    const auto main = bar.createItem(QStringLiteral("kestro-main"), recording());
    auto content = titled("", "");
    content.spokenText = QStringLiteral("RAM 42%");
    main->setContent(content);
    QAccessibleInterface* spoken = QAccessible::queryAccessibleInterface(viewOf("kestro-main"));
    ASSERT_NE(spoken, nullptr);
    EXPECT_EQ(spoken->text(QAccessible::Description), QStringLiteral("RAM 42%"));

    content.spokenText = QStringLiteral("RAM 43%");
    main->setContent(content);

    EXPECT_EQ(spoken->text(QAccessible::Name), QStringLiteral("Kestro"));
    EXPECT_EQ(spoken->text(QAccessible::Description), QStringLiteral("RAM 43%"));
}

}  // namespace
}  // namespace kestro
