#include "tests/app/windows/dashboard_window_fixture.h"

#include <QApplication>
#include <QKeyEvent>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>

namespace kestro {
namespace {

using testing::Contains;
using testing::IsEmpty;
using testing::Not;

TEST_F(DashboardWindowTest, LeavesFullScreenByEscapeAndByTheZoomButton) {
    show();
    for (const bool withKey : {true, false}) {
        window.toggleFullScreen();
        QApplication::processEvents();
        ASSERT_TRUE(window.isFullScreen());

        if (withKey) {
            QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
            QApplication::sendEvent(&window, &escape);
        } else {
            window.zoom();
        }
        QApplication::processEvents();

        EXPECT_FALSE(window.isFullScreen());
        EXPECT_EQ(window.size(), QSize(788, 480));
    }
}

TEST_F(DashboardWindowTest, ZoomsAndRestoresByDoubleClicksOnItsTitleBand) {
    show();
    const QRect before = window.geometry();

    doubleClick({100, 20});
    EXPECT_EQ(window.geometry(), available);
    EXPECT_EQ(window.preZoomFrame(), before);

    doubleClick({100, 20});
    EXPECT_EQ(window.geometry(), before);
    EXPECT_EQ(window.preZoomFrame(), std::nullopt);

    doubleClick({100, 20});
    EXPECT_EQ(window.geometry(), available);
}

TEST_F(DashboardWindowTest, StaysZoomedWhenTheAreaForWindowsChanges) {
    show();
    const QRect before = window.geometry();
    doubleClick({100, 20});
    delegate.events.clear();

    for (const QRect& changed : {QRect(0, 44, 1920, 1036), QRect(0, 0, 1280, 800), QRect(0, 28, 1920, 1052)}) {
        system.available = changed;
        window.fitToScreen();
        EXPECT_EQ(window.geometry(), changed);
    }

    EXPECT_THAT(delegate.taken(), IsEmpty());
    doubleClick({100, 20});
    EXPECT_EQ(window.geometry(), before);
}

TEST_F(DashboardWindowTest, KeepsTheUsersFrameAfterAZoomWhenTheAreaForWindowsChanges) {
    show();
    doubleClick({100, 20});
    window.setGeometry(100, 200, 900, 600);

    system.available = {0, 44, 1920, 1036};
    window.fitToScreen();

    EXPECT_EQ(window.geometry(), QRect(100, 200, 900, 600));
}

TEST_F(DashboardWindowTest, RestoresItsFrameAfterAZoomReversedHalfWay) {
    show();
    const QRect before = window.geometry();
    motion::setReduced(false);

    window.toggleWindowedFullScreen();
    EXPECT_EQ(window.preZoomFrame(), before);
    window.toggleWindowedFullScreen();
    EXPECT_EQ(window.preZoomFrame(), std::nullopt);
    window.toggleFullScreen();
    window.toggleFullScreen();

    EXPECT_EQ(window.geometry(), before);
}

TEST_F(DashboardWindowTest, DoesNotZoomByDoubleClicksElsewhere) {
    show();
    const QRect before = window.geometry();

    doubleClick({100, 51});
    doubleClick({788 - 148, 20});

    EXPECT_EQ(window.geometry(), before);
}

TEST_F(DashboardWindowTest, EntersAndLeavesFullScreen) {
    show();

    window.toggleFullScreen();
    QApplication::processEvents();
    EXPECT_TRUE(window.isFullScreen());
    EXPECT_THAT(delegate.taken(), Contains("willEnterFullScreen"));

    window.toggleFullScreen();
    QApplication::processEvents();
    EXPECT_FALSE(window.isFullScreen());
    EXPECT_THAT(delegate.taken(), Contains("didExitFullScreen"));
}

TEST_F(DashboardWindowTest, DoesNotReportFullScreenAsAResize) {
    show();

    window.toggleFullScreen();
    QApplication::processEvents();
    window.toggleFullScreen();
    QApplication::processEvents();

    EXPECT_EQ(window.size(), QSize(788, 480));
    EXPECT_THAT(delegate.taken(), Not(Contains("didResize")));
}

TEST_F(DashboardWindowTest, IgnoresFrameChangesInFullScreen) {
    show();
    window.toggleFullScreen();
    QApplication::processEvents();
    const QRect full = window.geometry();

    window.resizeKeepingOrigin({800, 460});
    doubleClick({100, 20});

    EXPECT_EQ(window.geometry(), full);
    EXPECT_EQ(window.preZoomFrame(), std::nullopt);
}

}  // namespace
}  // namespace kestro
