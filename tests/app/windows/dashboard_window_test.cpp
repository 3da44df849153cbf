#include "app/windows/dashboard_window.h"

#include "app/windows/window_geometry.h"
#include "tests/app/windows/plain_window_system.h"
#include "tests/app/windows/recording_window_delegate.h"
#include "ui/theme/motion.h"

#include <QApplication>
#include <QMouseEvent>
#include <QWindow>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kestro {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

struct DashboardWindowTest : testing::Test {
    DashboardWindowTest() { motion::setReduced(true); }
    ~DashboardWindowTest() override { motion::setReduced(false); }

    test::RecordingWindowDelegate delegate;
    test::PlainWindowSystem system;
    KestroDashboardWindow window{delegate, system, [](QWidget* parent) { return new QWidget(parent); }, 788};
    const QRect available = system.available;

    void show() {
        window.fitToScreen();
        system.makeKeyAndOrderFront(window);
        QApplication::processEvents();
        delegate.events.clear();
    }

    void sendMouse(QEvent::Type type, QPoint position, Qt::MouseButtons buttons = Qt::LeftButton) {
        QMouseEvent event(type, position, window.mapToGlobal(position), Qt::LeftButton, buttons, Qt::NoModifier);
        QApplication::sendEvent(&window, &event);
    }

    void doubleClick(QPoint position) {
        QMouseEvent event(QEvent::MouseButtonDblClick, position, window.mapToGlobal(position), Qt::LeftButton,
                          Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(window.windowHandle(), &event);
    }
};

TEST_F(DashboardWindowTest, IsCreatedHiddenWithItsSizeAndTitle) {
    EXPECT_FALSE(window.isVisible());
    EXPECT_EQ(window.size(), QSize(788, 480));
    EXPECT_EQ(window.minimumSize(), QSize(740, 420));
    EXPECT_EQ(window.windowTitle(), QStringLiteral("Kestro Studio Dashboard"));
}

TEST_F(DashboardWindowTest, FirstAppearsInTheMiddleOfTheScreen) {
    show();

    EXPECT_EQ(window.geometry(), centred({788, 480}, available));
}

TEST_F(DashboardWindowTest, ReappearsWhereItWas) {
    show();
    window.move(12, 34);
    window.orderOut();

    show();

    EXPECT_EQ(window.pos(), QPoint(12, 34));
}

TEST_F(DashboardWindowTest, ReturnsToTheScreenWhenItsPositionIsGone) {
    show();
    window.move(5000, 5000);
    window.orderOut();

    show();

    EXPECT_EQ(window.geometry(), QRect(1920 - 8 - 788, 1080 - 8 - 480, 788, 480));
}

TEST_F(DashboardWindowTest, FitsASmallerScreenWithoutReportingAResize) {
    show();

    system.available = {0, 0, 640, 400};
    window.fitToScreen();

    EXPECT_EQ(window.geometry(), QRect(8, 8, 624, 384));
    EXPECT_THAT(delegate.taken(), IsEmpty());
}

TEST_F(DashboardWindowTest, GrowsBackOnALargerScreenWithoutReportingAResize) {
    show();
    for (const QRect& small : {QRect(0, 0, 640, 400), QRect(0, 0, 600, 380)}) {
        system.available = small;
        window.fitToScreen();
    }
    ASSERT_EQ(window.size(), QSize(584, 364));

    system.available = available;
    window.fitWidth(788);

    EXPECT_EQ(window.size(), QSize(788, 480));
    EXPECT_EQ(window.minimumSize(), dashboardMinimumSize);
    EXPECT_THAT(delegate.taken(), IsEmpty());
}

TEST_F(DashboardWindowTest, OpensNoWiderThanItsScreen) {
    system.available = {0, 0, 960, 540};

    window.fitWidth(1260);
    show();

    EXPECT_EQ(window.geometry(), QRect(8, 30, 944, 480));
}

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

TEST_F(DashboardWindowTest, ReportsAResizeByTheUser) {
    show();

    window.resize(780, 450);

    EXPECT_THAT(delegate.taken(), ElementsAre("didResize"));
}

TEST_F(DashboardWindowTest, DoesNotReportAMoveAsAResize) {
    show();

    window.move(12, 34);

    EXPECT_THAT(delegate.taken(), IsEmpty());
}

TEST_F(DashboardWindowTest, DoesNotReportFittingItsWidth) {
    show();

    window.fitWidth(750);

    EXPECT_EQ(window.size(), QSize(750, 480));
    EXPECT_THAT(delegate.taken(), IsEmpty());
}

TEST_F(DashboardWindowTest, ReportsAUsersResizeAfterFittingItsWidth) {
    show();
    window.fitWidth(750);

    window.resize(740, 425);

    EXPECT_THAT(delegate.taken(), ElementsAre("didResize"));
}

TEST_F(DashboardWindowTest, FitsItsWidthEvenWhileHidden) {
    window.fitWidth(760);

    show();

    EXPECT_EQ(window.size(), QSize(760, 480));
}

TEST_F(DashboardWindowTest, KeepsItsBottomLeftCornerWhenResizedByCommand) {
    show();
    window.setGeometry(10, 300, 740, 420);

    window.resizeKeepingOrigin({800, 460});

    EXPECT_EQ(window.geometry(), QRect(10, 260, 800, 460));
    EXPECT_THAT(delegate.taken(), Contains("didResize"));
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

TEST_F(DashboardWindowTest, LeavesTheFrameToTheUserOncePressed) {
    show();
    window.setGeometry(10, 300, 740, 420);
    motion::setReduced(false);

    window.resizeKeepingOrigin({800, 460});
    sendMouse(QEvent::MouseButtonPress, {300, 200});
    const QRect pressed = window.geometry();
    window.toggleFullScreen();
    window.toggleFullScreen();

    EXPECT_EQ(window.geometry(), pressed);
}

TEST_F(DashboardWindowTest, DoesNotZoomByDoubleClicksElsewhere) {
    show();
    const QRect before = window.geometry();

    doubleClick({100, 51});
    doubleClick({788 - 148, 20});

    EXPECT_EQ(window.geometry(), before);
}

TEST_F(DashboardWindowTest, MovesWhenItsBackgroundIsDragged) {
    show();
    window.move(10, 20);

    sendMouse(QEvent::MouseButtonPress, {300, 200});
    sendMouse(QEvent::MouseMove, {340, 230});

    EXPECT_EQ(window.pos(), QPoint(50, 50));
}

TEST_F(DashboardWindowTest, DoesNotMoveOnAShakyClick) {
    show();
    const QPoint before = window.pos();

    sendMouse(QEvent::MouseButtonPress, {300, 200});
    sendMouse(QEvent::MouseMove, {301, 201});
    sendMouse(QEvent::MouseButtonRelease, {301, 201}, Qt::NoButton);
    sendMouse(QEvent::MouseMove, {400, 300}, Qt::NoButton);

    EXPECT_EQ(window.pos(), before);
}

TEST_F(DashboardWindowTest, DoesNotMoveAfterADoubleClick) {
    show();
    const QPoint before = window.pos();

    sendMouse(QEvent::MouseButtonPress, {300, 200});
    sendMouse(QEvent::MouseButtonRelease, {300, 200}, Qt::NoButton);
    sendMouse(QEvent::MouseButtonDblClick, {300, 200});
    sendMouse(QEvent::MouseMove, {400, 300});

    EXPECT_EQ(window.pos(), before);
}

TEST_F(DashboardWindowTest, ForwardsTheDoubleClick) {
    show();
    struct Clicked : QWidget {
        using QWidget::QWidget;
        void mouseDoubleClickEvent(QMouseEvent*) override { ++clicks; }
        int clicks = 0;
    } header(&window);
    header.setGeometry(0, 0, 200, 40);
    header.show();

    doubleClick({100, 20});

    EXPECT_EQ(header.clicks, 1);
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

TEST_F(DashboardWindowTest, StaysOpenWhenTheDelegateRefusesToClose) {
    show();
    delegate.allowsClosing = false;

    window.close();

    EXPECT_TRUE(window.isVisible());
}

TEST_F(DashboardWindowTest, IsNotOnTheScreenWhileMinimised) {
    show();

    window.setWindowState(Qt::WindowMinimized);
    QApplication::processEvents();

    EXPECT_FALSE(window.isOnScreen());
    EXPECT_THAT(delegate.taken(), Contains("visibility"));
}

}  // namespace
}  // namespace kestro
