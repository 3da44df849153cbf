#include "app/windows/popover_window.h"

#include "platform/simulated/simulated_clock.h"
#include "tests/app/windows/plain_window_system.h"
#include "tests/app/windows/recording_window_delegate.h"
#include "ui/theme/motion.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMenu>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kestro {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

struct PopoverWindowTest : testing::Test {
    PopoverWindowTest() { motion::setReduced(true); }
    ~PopoverWindowTest() override { motion::setReduced(false); }

    SimulatedClock clock;
    test::RecordingWindowDelegate delegate;
    test::PlainWindowSystem system;
    int contentsMade = 0;
    PopoverWindow popover{delegate, system, clock, [this](QWidget* parent) {
                              ++contentsMade;
                              return new QWidget(parent);
                          }};
    QWidget elsewhere;

    void activate(QWidget& window) {
        window.show();
        window.activateWindow();
        QApplication::processEvents();
    }

    void show() {
        popover.showRelativeTo({700, 0, 40, 20});
        QApplication::processEvents();
    }

    void press(int key) {
        QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
        QApplication::sendEvent(&popover, &event);
    }

    void expectToCloseForAnotherMenu() {
        QMenu menu;
        menu.addAction(QStringLiteral("Silent"));

        menu.popup({0, 0});

        EXPECT_FALSE(popover.isVisible());
        EXPECT_TRUE(menu.isVisible());
        EXPECT_THAT(delegate.events, ElementsAre("popoverDidShow", "popoverDidClose"));
    }
};

TEST_F(PopoverWindowTest, Is330By325) {
    EXPECT_EQ(popover.size(), QSize(330, 325));
}

TEST_F(PopoverWindowTest, BuildsItsContentWhenFirstShown) {
    EXPECT_EQ(contentsMade, 0);

    show();
    popover.orderOut();
    show();

    EXPECT_EQ(contentsMade, 1);
    EXPECT_EQ(popover.findChild<QWidget*>()->size(), popover.size());
}

TEST_F(PopoverWindowTest, ReportsShowingAndClosing) {
    show();
    popover.orderOut();

    EXPECT_THAT(delegate.events, ElementsAre("popoverDidShow", "popoverDidClose"));
}

TEST_F(PopoverWindowTest, OpensBesideItsItem) {
    show();

    EXPECT_EQ(popover.pos(), QPoint(740 - 330, 26));
}

TEST_F(PopoverWindowTest, ClosesOnEscape) {
    show();

    press(Qt::Key_Escape);

    EXPECT_FALSE(popover.isVisible());
    EXPECT_FALSE(popover.takesBack({}));
}

TEST_F(PopoverWindowTest, StaysOpenOnOtherKeys) {
    show();

    press(Qt::Key_A);

    EXPECT_TRUE(popover.isVisible());
}

TEST_F(PopoverWindowTest, ClosesWhenItLosesTheKeyboardFocus) {
    show();
    ASSERT_TRUE(popover.isActiveWindow());

    activate(elsewhere);

    EXPECT_FALSE(popover.isVisible());
}

TEST_F(PopoverWindowTest, ClosesOnAPressElsewhere) {
    show();
    ASSERT_FALSE(popover.geometry().contains(QCursor::pos()));

    system.press();

    EXPECT_FALSE(popover.isShown());
}

TEST_F(PopoverWindowTest, StaysOpenUnderItsOwnMenu) {
    show();
    QMenu menu(&popover);
    menu.addAction(QStringLiteral("Silent"));
    menu.popup({0, 0});
    QEvent deactivate(QEvent::WindowDeactivate);
    QApplication::sendEvent(&popover, &deactivate);

    EXPECT_TRUE(popover.isVisible());
}

TEST_F(PopoverWindowTest, IgnoresOneClickWithinHalfASecondAfterAPressElsewhere) {
    for (const auto& [passed, expected] : {std::pair{499ms, true}, std::pair{500ms, false}}) {
        show();
        activate(elsewhere);

        clock.turn(passed);

        EXPECT_EQ(popover.takesBack({}), expected) << passed.count();
        EXPECT_FALSE(popover.takesBack({}));
    }
}

TEST_F(PopoverWindowTest, IgnoresNoClickOnAnItemThatThePressMissed) {
    const QRect item(700, 0, 40, 20);
    QCursor::setPos(300, 300);
    show();
    activate(elsewhere);
    EXPECT_FALSE(popover.takesBack(item));

    QCursor::setPos(720, 10);
    show();
    activate(elsewhere);
    EXPECT_TRUE(popover.takesBack(item));
}

TEST_F(PopoverWindowTest, ForgetsThePressWhenShownAgain) {
    show();
    activate(elsewhere);

    show();

    EXPECT_FALSE(popover.takesBack({}));
}

TEST_F(PopoverWindowTest, CountsAsClosedWhileFadingOut) {
    motion::setReduced(false);
    show();

    popover.orderOut();

    EXPECT_TRUE(popover.isVisible());
    EXPECT_FALSE(popover.isShown());
    EXPECT_THAT(delegate.events, ElementsAre("popoverDidShow", "popoverDidClose"));
}

TEST_F(PopoverWindowTest, EndsItsFadeBeforeAMenuOpens) {
    motion::setReduced(false);
    show();
    popover.orderOut();
    ASSERT_TRUE(popover.isVisible());
    expectToCloseForAnotherMenu();
}

TEST_F(PopoverWindowTest, ClosesAtOnceWhenAnotherMenuOpens) {
    motion::setReduced(false);
    show();
    expectToCloseForAnotherMenu();
}

TEST_F(PopoverWindowTest, KeepsFadingOutWhenAWindowOpens) {
    motion::setReduced(false);
    show();
    popover.orderOut();

    elsewhere.show();

    EXPECT_TRUE(popover.isVisible());
}

TEST_F(PopoverWindowTest, StaysOpenUnderAMenuAfterReopeningWhileFadingOut) {
    motion::setReduced(false);
    show();
    popover.orderOut();
    show();
    QMenu menu(&popover);
    menu.addAction(QStringLiteral("Silent"));

    menu.popup({0, 0});

    EXPECT_TRUE(popover.isVisible());
}

TEST_F(PopoverWindowTest, ReopensWhileFadingOut) {
    motion::setReduced(false);
    show();
    popover.orderOut();

    show();

    EXPECT_TRUE(popover.isShown());
    EXPECT_TRUE(popover.isVisible());
}

TEST_F(PopoverWindowTest, ClosesWhenTheWindowManagerRequestsIt) {
    show();

    popover.close();

    EXPECT_THAT(delegate.events, ElementsAre("popoverDidShow", "shouldClose", "popoverDidClose"));
}

}  // namespace
}  // namespace kestro
