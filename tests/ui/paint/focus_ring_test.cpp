#include "ui/paint/focus_ring.h"

#include "tests/ui/controls/view_test.h"
#include "ui/controls/button.h"

#include <QApplication>

#include <gtest/gtest.h>

namespace kestro {
namespace {

class FocusRingTest : public ViewTest {
protected:
    FocusRingTest() : first_(ButtonKind::chip, &window_), second_(ButtonKind::chip, &window_) {
        window_.resize(200, 60);
        first_.setGeometry(10, 10, 28, 28);
        second_.setGeometry(60, 10, 28, 28);
        window_.show();
        window_.activateWindow();
        QApplication::processEvents();
        if (QWidget* focused = window_.focusWidget()) {
            focused->clearFocus();
        }
    }

    FocusRing* ring() const { return window_.findChild<FocusRing*>(); }

    QWidget window_;
    Button first_;
    Button second_;
};

TEST_F(FocusRingTest, ShowsTheRingForKeyboardFocus) {
    first_.setFocus(Qt::TabFocusReason);

    ASSERT_TRUE(ring());
    EXPECT_TRUE(ring()->isVisible());
    EXPECT_TRUE(ring()->geometry().contains(first_.geometry().adjusted(-3, -3, 3, 3)));
}

TEST_F(FocusRingTest, ShowsNoRingForPointerFocus) {
    first_.setFocus(Qt::MouseFocusReason);

    EXPECT_FALSE(first_.showsFocus());
    EXPECT_FALSE(ring());
}

TEST_F(FocusRingTest, MovesTheRingWithTheFocusAndTheControl) {
    first_.setFocus(Qt::TabFocusReason);
    second_.setFocus(Qt::TabFocusReason);
    second_.move(120, 20);
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);

    ASSERT_TRUE(ring());
    EXPECT_FALSE(first_.showsFocus());
    EXPECT_TRUE(ring()->geometry().contains(QRect(117, 17, 34, 34)));
}

TEST_F(FocusRingTest, HidesTheRingWithItsControl) {
    first_.setFocus(Qt::TabFocusReason);

    first_.hide();
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);

    EXPECT_TRUE(!ring() || !ring()->isVisible() || ring()->geometry().contains(second_.geometry()));
}

TEST_F(FocusRingTest, SurvivesTheDestructionOfItsControl) {
    auto* third = new Button(ButtonKind::chip, &window_);
    third->show();
    third->setFocus(Qt::TabFocusReason);

    delete third;
    QApplication::processEvents();

    EXPECT_FALSE(ring() && ring()->isVisible());
    first_.setFocus(Qt::TabFocusReason);
    ASSERT_TRUE(ring());
    EXPECT_TRUE(ring()->geometry().contains(first_.geometry().adjusted(-3, -3, 3, 3)));
}

}  // namespace
}  // namespace kestro
