#include "shell/linux/linux_window_system.h"

#include <QApplication>
#include <QWidget>
#include <QWindow>

#include <gtest/gtest.h>

namespace kestro {
namespace {

struct LinuxWindowSystemTest : testing::Test {
    LinuxWindowSystem system;
    QWidget window;

    bool isAboveOthers() const { return window.windowHandle()->flags().testFlag(Qt::WindowStaysOnTopHint); }
};

TEST_F(LinuxWindowSystemTest, ChangesTheLevelWithoutRecreatingTheWindow) {
    window.show();
    const QWindow* handle = window.windowHandle();

    system.setFloatingLevel(window, true);

    EXPECT_EQ(window.windowHandle(), handle);
    EXPECT_TRUE(window.isVisible());
    EXPECT_TRUE(isAboveOthers());

    system.setFloatingLevel(window, false);

    EXPECT_FALSE(isAboveOthers());
}

TEST_F(LinuxWindowSystemTest, ShowsAWindowAtTheLevelSetWhileHidden) {
    system.setFloatingLevel(window, true);

    window.show();

    EXPECT_TRUE(isAboveOthers());
}

TEST_F(LinuxWindowSystemTest, RestoresAMinimisedWindowThatIsOrderedFront) {
    window.show();
    window.setWindowState(Qt::WindowMinimized);
    QApplication::processEvents();

    system.makeKeyAndOrderFront(window);

    EXPECT_TRUE(window.isVisible());
    EXPECT_FALSE(window.isMinimized());
}

TEST_F(LinuxWindowSystemTest, ReportsNoPressesAndNoWithdrawalsWithoutX11) {
    window.show();

    EXPECT_EQ(system.watchPresses([] {}), nullptr);
    EXPECT_FALSE(system.isWithdrawn(window));
}

}  // namespace
}  // namespace kestro
