#include "ui/menus/popup_menu.h"

#include "tests/ui/controls/view_test.h"
#include "ui/menus/menu_button.h"
#include "ui/menus/menu_style.h"
#include "ui/theme/window_compositing.h"

#include <QCursor>
#include <QPointer>

namespace kestro {
namespace {

using PopupMenuTest = ViewTest;

MenuEntry entry(const char* title, std::function<void()> action = {}) {
    MenuEntry made;
    made.title = QString::fromUtf8(title);
    made.action = std::move(action);
    return made;
}

TEST_F(PopupMenuTest, HasRowsOfTwentyFourAndSeparatorsOfNine) {
    PopupMenu menu({entry("Silent"), MenuEntry::separator(), MenuEntry::header(QStringLiteral("Presets"))});
    menu.ensurePolished();
    menu.resize(menu.sizeHint());

    EXPECT_EQ(menu.actionGeometry(menu.actions()[0]), QRect(4, 4, menu.width() - 8, 24));
    EXPECT_EQ(menu.actionGeometry(menu.actions()[1]).height(), 9);
    EXPECT_EQ(menu.actionGeometry(menu.actions()[2]).height(), 24);
    EXPECT_EQ(menu.sizeHint().height(), 4 + 24 + 9 + 24 + 4);
}

TEST_F(PopupMenuTest, CutsItsCornersOnlyWithoutCompositing) {
    const auto shape = [](bool isBlended) {
        window_compositing::setOverride(isBlended);
        PopupMenu menu({entry("Silent"), entry("Cool")});
        menu.popup(QPoint());
        window_compositing::setOverride(std::nullopt);
        return menu.mask();
    };

    EXPECT_FALSE(shape(false).contains(QPoint(0, 0)));
    EXPECT_TRUE(shape(false).contains(QPoint(8, 0)));
    EXPECT_TRUE(shape(true).isEmpty());
}

TEST_F(PopupMenuTest, ShowsAmpersandsAndTabsAsPlainText) {
    PopupMenu menu({entry("R&D\tx")});

    EXPECT_EQ(menu.actions()[0]->text(), QStringLiteral("R&&D x"));
    EXPECT_EQ(menu.actions()[0]->data().toString(), QStringLiteral("R&D x"));
}

TEST_F(PopupMenuTest, ChecksAndDisablesEntriesAsRequested) {
    MenuEntry checked = entry("Cool");
    checked.isChecked = true;
    MenuEntry disabled = entry("Turbo");
    disabled.isEnabled = false;

    PopupMenu menu({checked, disabled, MenuEntry::header(QStringLiteral("Curve Presets"))});

    EXPECT_TRUE(menu.actions()[0]->isChecked());
    EXPECT_FALSE(menu.actions()[1]->isEnabled());
    EXPECT_FALSE(menu.actions()[2]->isEnabled());
}

TEST_F(PopupMenuTest, RunsTheActionAfterTheMenuHasClosed) {
    int chosen = 0;
    QPointer<PopupMenu> menu = new PopupMenu({entry("Silent", [&] { ++chosen; })});
    menu->openAt({10, 10});

    menu->actions()[0]->trigger();
    EXPECT_EQ(chosen, 0);
    menu->close();
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QApplication::processEvents();

    EXPECT_EQ(chosen, 1);
    EXPECT_FALSE(menu);
}

TEST_F(PopupMenuTest, OpensSubmenus) {
    MenuEntry parent = entry("Fan Performance");
    parent.submenu = {entry("Silent"), entry("Cool")};

    PopupMenu menu({parent});

    ASSERT_TRUE(menu.actions()[0]->menu());
    EXPECT_EQ(menu.actions()[0]->menu()->actions().size(), 2);
}

TEST_F(PopupMenuTest, MakesRoomForTheShortcut) {
    MenuEntry plain = entry("Toggle Full Screen");
    MenuEntry withShortcut = plain;
    withShortcut.shortcut = QStringLiteral("Ctrl+Meta+F");

    EXPECT_GT(PopupMenu({withShortcut}).sizeHint().width(), PopupMenu({plain}).sizeHint().width() + 28);
}

TEST_F(PopupMenuTest, ReservesShortcutRoomOnlyBesideItsOwnTitle) {
    MenuEntry longTitle = entry("Deactivate Keep-Awake (14m 05s)");
    MenuEntry withShortcut = entry("Settings...");
    withShortcut.shortcut = QStringLiteral("Ctrl+,");

    EXPECT_EQ(PopupMenu({longTitle, withShortcut}).sizeHint().width(), PopupMenu({longTitle}).sizeHint().width());
}

TEST_F(PopupMenuTest, KeepsTheShortcutOutOfTheTitle) {
    MenuEntry withShortcut = entry("Settings...");
    withShortcut.shortcut = QStringLiteral("Ctrl+,");

    EXPECT_EQ(PopupMenu({withShortcut}).actions()[0]->text(), QStringLiteral("Settings..."));
}

TEST_F(PopupMenuTest, OpensAwayFromTheRightEdgeOfTheScreen) {
    auto* menu = new PopupMenu({entry("Silent")});
    const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();

    menu->openAt({screen.right() - 20, 40});

    EXPECT_EQ(menu->geometry().right(), screen.right() - 8);
    EXPECT_EQ(menu->y(), 40);
    menu->close();
}

TEST_F(PopupMenuTest, UpdatesItsShapeWhenReopened) {
    PopupMenu menu({entry("Silent"), entry("Cool")});
    menu.ensurePolished();

    window_compositing::setOverride(false);
    menu.popup({10, 10});
    EXPECT_FALSE(menu.mask().contains(QPoint(0, 0)));
    EXPECT_TRUE(menu.mask().contains(menu.rect().center()));
    menu.hide();
    window_compositing::setOverride(true);
    menu.popup({10, 10});

    EXPECT_TRUE(menu.mask().isEmpty());
    window_compositing::setOverride(std::nullopt);
}

class MenuButtonTest : public ViewTest {
protected:
    MenuButtonTest()
        : button_(ButtonKind::plain, [this] {
              ++built_;
              return Menu{entry("Silent"), entry("Cool")};
          }) {
        button_.setText(QStringLiteral("Profile: Cool"));
        button_.resize(302, 22);
        button_.show();
        QApplication::processEvents();
    }

    PopupMenu* menu() const { return button_.findChild<PopupMenu*>(); }

    MenuButton button_;
    int built_ = 0;
};

TEST_F(MenuButtonTest, RebuildsItsMenuEachTimeItOpens) {
    for (int opening = 1; opening <= 2; ++opening) {
        button_.click();
        ASSERT_TRUE(menu());
        EXPECT_TRUE(menu()->isVisible());
        EXPECT_EQ(built_, opening);
        menu()->close();
        QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        EXPECT_FALSE(menu());
    }
}

TEST_F(MenuButtonTest, OpensAMenuAtLeastAsWideAsItself) {
    button_.click();

    ASSERT_TRUE(menu());
    EXPECT_GE(menu()->width(), button_.width());
    menu()->close();
}

TEST_F(MenuButtonTest, SelectsTheFirstEntryWhenOpenedByKeyboard) {
    press(button_, Qt::Key_Space);

    ASSERT_TRUE(menu());
    EXPECT_EQ(menu()->activeAction(), menu()->actions()[0]);
    menu()->close();
}

TEST_F(MenuButtonTest, SelectsTheCurrentEntryWhenOpenedByKeyboard) {
    MenuButton choice(ButtonKind::plain, [] {
        Menu entries{entry("Silent"), entry("Cool"), entry("Turbo")};
        entries[1].isChecked = true;
        return entries;
    });
    choice.show();

    press(choice, Qt::Key_Down);

    const auto* const opened = choice.findChild<PopupMenu*>();
    ASSERT_TRUE(opened);
    EXPECT_EQ(opened->activeAction(), opened->actions()[1]);
}

TEST_F(MenuButtonTest, IsNotHoveredOnceItsMenuHasClosedElsewhere) {
    button_.move(400, 400);
    QCursor::setPos(10, 10);
    QHoverEvent leave(QEvent::HoverLeave, QPointF(), QPointF(), QPointF());
    QApplication::sendEvent(&button_, &leave);
    const QImage atRest = picture(button_);
    hoverAt(button_, QPointF(50, 10));
    ASSERT_NE(picture(button_), atRest);

    button_.click();
    menu()->close();

    EXPECT_EQ(picture(button_), atRest);
}

TEST_F(MenuButtonTest, HasTheMenuButtonRole) {
    EXPECT_EQ(QAccessible::queryAccessibleInterface(&button_)->role(), QAccessible::ButtonMenu);
}

}  // namespace
}  // namespace kestro
