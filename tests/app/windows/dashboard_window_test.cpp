#include "app/windows/dashboard_window.h"

#include "app/windows/window_geometry.h"
#include "tests/app/windows/dashboard_window_fixture.h"

#include <QApplication>
#include <QMouseEvent>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kestro {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

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

TEST_F(DashboardWindowTest, ShowsWhereItCanBeResized) {
    show();

    hover({window.width() - 1, 200});
    EXPECT_EQ(window.cursor().shape(), Qt::SizeHorCursor);
    hover({400, 200});

    EXPECT_EQ(window.cursor().shape(), Qt::ArrowCursor);
}

TEST_F(DashboardWindowTest, LeavesResizingToASystemThatDoesIt) {
    system.resizesWindows = true;
    show();

    hover({window.width() - 1, 200});

    EXPECT_EQ(window.cursor().shape(), Qt::ArrowCursor);
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
