#include "shell/linux/linux_window_system.h"

#include "tests/shell/fake_status_bar.h"

#include <QApplication>
#include <QScreen>
#include <QWidget>
#include <QWindow>

#include <gtest/gtest.h>

namespace kestro {
namespace {

struct LinuxWindowSystemTest : testing::Test {
    test::FakeStatusBar statusBar;
    LinuxWindowSystem system{statusBar};
    QWidget window;

    bool isAboveOthers() const { return window.windowHandle()->flags().testFlag(Qt::WindowStaysOnTopHint); }
};

TEST_F(LinuxWindowSystemTest, KeepsWindowsBelowTheStrip) {
    const QScreen& screen = *QGuiApplication::primaryScreen();
    const QRect whole = screen.availableGeometry();
    EXPECT_EQ(system.availableArea(screen), whole);

    statusBar.covered = {whole.right() - 200, whole.top() + 8, 190, 28};
    EXPECT_EQ(system.availableArea(screen), whole.adjusted(0, 44, 0, 0));

    statusBar.covered.translate(whole.width(), 0);
    EXPECT_EQ(system.availableArea(screen), whole);
}

TEST_F(LinuxWindowSystemTest, KeepsAWindowAboveAnother) {
    QWidget other;
    other.show();

    // Also one that is about to be shown.
    system.keepAbove(window, &other);
    ASSERT_NE(window.windowHandle(), nullptr);
    EXPECT_EQ(window.windowHandle()->transientParent(), other.windowHandle());
    window.show();
    EXPECT_EQ(window.windowHandle()->transientParent(), other.windowHandle());

    system.keepAbove(window, nullptr);
    EXPECT_EQ(window.windowHandle()->transientParent(), nullptr);
}

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

TEST_F(LinuxWindowSystemTest, WatchesNoPressesAndNoWithdrawalsWithoutX11) {
    EXPECT_EQ(system.watchPresses([] {}), nullptr);
    EXPECT_EQ(system.guardAgainstWithdrawal(window), nullptr);
}

}  // namespace
}  // namespace kestro
