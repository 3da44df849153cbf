#include "shell/macos/mac_window_system.h"

#include "shell/macos/window_style.h"
#include "tests/shell/macos/fake_app_kit.h"

#include <QApplication>
#include <QScreen>
#include <QWindow>
#include <QWindowStateChangeEvent>

#include <gtest/gtest.h>

namespace kestro {
namespace {

NativeView viewOf(const QWidget& window) {
    return static_cast<NativeView>(window.effectiveWinId());
}

/// A window that can give up the system's window.
struct Window : QWidget {
    Window() : QWidget(nullptr, Qt::Window | Qt::FramelessWindowHint) {}
    using QWidget::destroy;
};

struct MacWindowSystemTest : testing::Test {
    test::FakeWindows windows;
    test::FakeApplication application;
    MacWindowSystem system{windows, application};
    Window window;

    test::FakeWindows::Window& native() { return windows.windows[viewOf(window)]; }

    void reportState(Qt::WindowStates before) {
        QWindowStateChangeEvent report(before);
        QApplication::sendEvent(window.windowHandle(), &report);
    }
};

TEST_F(MacWindowSystemTest, OrdersAWindowFrontOfOtherApplications) {
    system.makeKeyAndOrderFront(window);

    EXPECT_TRUE(window.isVisible());
    EXPECT_EQ(application.activations, 1);
    EXPECT_EQ(native().style, window_style::ofResizableWindow);
    EXPECT_EQ(native().level, window_style::normalLevel);
}

TEST_F(MacWindowSystemTest, RestoresAMinimisedWindowThatIsOrderedFront) {
    window.show();
    window.setWindowState(Qt::WindowMinimized);

    system.makeKeyAndOrderFront(window);

    EXPECT_FALSE(window.isMinimized());
}

TEST_F(MacWindowSystemTest, AWindowOfFixedSizeCannotBeResized) {
    window.setFixedSize(860, 750);

    system.makeKeyAndOrderFront(window);

    EXPECT_EQ(native().style, window_style::ofFixedWindow);
}

TEST_F(MacWindowSystemTest, FloatsAtOnceOrWhenShown) {
    system.setFloatingLevel(window, true);
    EXPECT_TRUE(windows.windows.empty()) << "there is no window of the system yet";

    system.makeKeyAndOrderFront(window);
    EXPECT_EQ(native().level, window_style::floatingLevel);
    system.setFloatingLevel(window, false);

    EXPECT_EQ(native().level, window_style::normalLevel);
}

TEST_F(MacWindowSystemTest, RestoresLookAndLevelAfterFullScreen) {
    system.makeKeyAndOrderFront(window);
    system.setFloatingLevel(window, true);
    window.setWindowState(Qt::WindowFullScreen);
    window.setWindowState(Qt::WindowNoState);
    QCoreApplication::processEvents();
    // AppKit has not finished when the widget has its event; then the toolkit applies a look and a level of its
    // own, and tells the window.
    native() = {};
    reportState(Qt::WindowFullScreen);

    EXPECT_EQ(native().style, window_style::ofResizableWindow);
    EXPECT_EQ(native().level, window_style::floatingLevel);
}

TEST_F(MacWindowSystemTest, LeavesTheLookInFullScreenToTheToolkit) {
    system.makeKeyAndOrderFront(window);
    window.setWindowState(Qt::WindowFullScreen);
    native() = {};

    reportState(Qt::WindowNoState);
    system.makeKeyAndOrderFront(window);
    system.setFloatingLevel(window, true);

    EXPECT_FALSE(native().style);
    EXPECT_FALSE(native().level);
}

TEST_F(MacWindowSystemTest, FollowsFullScreenThatTheSystemStartsAndEnds) {
    system.makeKeyAndOrderFront(window);
    native() = {};

    window.windowHandle()->setWindowStates(Qt::WindowFullScreen);
    QCoreApplication::processEvents();
    EXPECT_FALSE(native().style);
    window.windowHandle()->setWindowStates(Qt::WindowNoState);
    QCoreApplication::processEvents();

    EXPECT_EQ(native().style, window_style::ofResizableWindow);
}

TEST_F(MacWindowSystemTest, RestoresTheLookOfAWindowThatReturnedInFullScreen) {
    system.makeKeyAndOrderFront(window);
    window.setWindowState(Qt::WindowFullScreen);
    window.hide();
    // As windows do that free their memory.
    window.destroy();
    system.makeKeyAndOrderFront(window);
    native() = {};

    window.windowHandle()->setWindowStates(Qt::WindowNoState);
    QCoreApplication::processEvents();

    EXPECT_EQ(native().style, window_style::ofResizableWindow);
}

TEST_F(MacWindowSystemTest, LeavesThePopoversLookToTheToolkit) {
    QWidget popover(nullptr, Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
    system.keepOutOfTaskBars(popover);
    system.makeKeyAndOrderFront(popover);

    const auto& native = windows.windows.at(viewOf(popover));
    EXPECT_FALSE(native.style);
    EXPECT_FALSE(native.level);
    EXPECT_EQ(native.collectionBehavior, window_style::ofPopover);
}

TEST_F(MacWindowSystemTest, KeepsAWindowAboveAnotherThatIsActivated) {
    QWidget other;
    system.keepAbove(window, &other);
    EXPECT_TRUE(windows.ordered.empty()) << "neither is shown";
    window.show();
    other.show();
    system.keepAbove(window, &other);
    EXPECT_EQ(windows.ordered.size(), 1U);

    QEvent activation(QEvent::WindowActivate);
    QApplication::sendEvent(&other, &activation);
    EXPECT_EQ(windows.ordered.size(), 2U);
    EXPECT_EQ(windows.ordered.back(), std::pair(viewOf(window), viewOf(other)));
    window.hide();
    QApplication::sendEvent(&other, &activation);

    EXPECT_EQ(windows.ordered.size(), 2U);
}

TEST_F(MacWindowSystemTest, EndsThePairOfWindows) {
    QWidget other;
    window.show();
    other.show();
    system.keepAbove(window, &other);

    system.keepAbove(window, nullptr);

    QEvent activation(QEvent::WindowActivate);
    QApplication::sendEvent(&other, &activation);
    EXPECT_EQ(windows.ordered.size(), 1U);
}

TEST_F(MacWindowSystemTest, ForgetsADestroyedWindow) {
    QWidget other;
    other.show();
    {
        QWidget above;
        above.show();
        system.keepAbove(above, &other);
    }
    const auto before = windows.ordered.size();

    QEvent activation(QEvent::WindowActivate);
    QApplication::sendEvent(&other, &activation);

    EXPECT_EQ(windows.ordered.size(), before);
}

TEST_F(MacWindowSystemTest, WatchesPressesUntilTheMonitorIsDestroyed) {
    int presses = 0;
    auto monitor = system.watchPresses([&] { ++presses; });
    ASSERT_TRUE(monitor);

    application.press();
    EXPECT_EQ(presses, 1);
    monitor.reset();

    EXPECT_FALSE(application.press);
    application.refusesWatches = true;
    EXPECT_EQ(system.watchPresses([] {}), nullptr);
}

TEST_F(MacWindowSystemTest, PlacesWindowsBelowTheMenuBar) {
    const QScreen& screen = *QGuiApplication::primaryScreen();

    EXPECT_TRUE(system.canPlaceWindows());
    EXPECT_TRUE(system.resizesAtEdges());
    EXPECT_EQ(system.availableArea(screen), screen.availableGeometry());
    EXPECT_EQ(system.guardAgainstWithdrawal(window), nullptr);
}

}  // namespace
}  // namespace kestro
