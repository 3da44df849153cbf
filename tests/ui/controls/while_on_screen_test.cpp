#include "ui/controls/while_on_screen.h"

#include "tests/support/assignable.h"

#include <QApplication>
#include <QWindowStateChangeEvent>

#include <gtest/gtest.h>

namespace kestro {
namespace {

struct WhileOnScreenTest : testing::Test {
    QWidget window;
    QWidget owner{&window};
    test::Assignable<int> value{0};
    int caughtUp = 0;
    int shown = 0;
    WhileOnScreen onScreen{owner, [this] { ++caughtUp; }};

    WhileOnScreenTest() {
        onScreen.follow(value, [this] { ++shown; });
    }
};

TEST_F(WhileOnScreenTest, RestsWhileHidden) {
    value.set(1);

    EXPECT_EQ(shown, 0);
    EXPECT_EQ(caughtUp, 0);
}

TEST_F(WhileOnScreenTest, CatchesUpOnAppearingAndFollowsFromThenOn) {
    window.show();
    EXPECT_EQ(caughtUp, 1);

    value.set(1);
    value.set(1);
    EXPECT_EQ(shown, 2);

    window.hide();
    value.set(2);
    EXPECT_EQ(shown, 2);
}

TEST_F(WhileOnScreenTest, RestsWhileItsWindowIsMinimisedAndCatchesUpOnceItIsRestored) {
    window.show();
    window.showMinimized();
    QApplication::processEvents();
    value.set(1);
    EXPECT_EQ(shown, 0);
    EXPECT_EQ(caughtUp, 1);

    window.showNormal();
    QApplication::processEvents();

    EXPECT_EQ(caughtUp, 2);
}

TEST_F(WhileOnScreenTest, DoesNotCatchUpOnOtherChangesOfTheWindow) {
    window.show();

    window.showFullScreen();
    QApplication::processEvents();

    EXPECT_EQ(caughtUp, 1);
}

}  // namespace
}  // namespace kestro
