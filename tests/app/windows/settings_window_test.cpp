#include "app/windows/settings_window.h"

#include "tests/app/windows/plain_window_system.h"
#include "tests/app/windows/recording_window_delegate.h"

#include <gtest/gtest.h>

namespace kestro {
namespace {

TEST(SettingsWindow, AppearsInTheMiddleOfTheScreen) {
    test::RecordingWindowDelegate delegate;
    test::PlainWindowSystem system;
    system.available = {0, 0, 1920, 1050};

    const SettingsWindow window(delegate, system, {});

    EXPECT_EQ(window.geometry(), QRect(530, 150, 860, 750));
    EXPECT_EQ(window.windowTitle(), QStringLiteral("Kestro Preferences"));
}

TEST(SettingsWindow, FitsItsScreenEachTimeItIsShown) {
    test::RecordingWindowDelegate delegate;
    test::PlainWindowSystem system;
    system.available = {0, 0, 1024, 600};
    SettingsWindow window(delegate, system, {});
    EXPECT_EQ(window.geometry(), QRect(82, 8, 860, 584));

    system.available = {0, 30, 1920, 1050};
    window.fitToScreen();
    EXPECT_EQ(window.size(), QSize(860, 750));
    EXPECT_TRUE(system.available.contains(window.geometry()));

    system.available = {0, 0, 640, 400};
    window.fitToScreen();
    EXPECT_EQ(window.geometry(), QRect(8, 8, 624, 384));
}

TEST(SettingsWindow, HidesAndReportsItWhenClosed) {
    test::RecordingWindowDelegate delegate;
    test::PlainWindowSystem system;
    SettingsWindow window(delegate, system, {});
    window.show();
    delegate.events.clear();

    window.close();

    EXPECT_FALSE(window.isVisible());
    EXPECT_EQ(delegate.taken(), (std::vector<std::string>{"shouldClose", "visibility"}));
}

}  // namespace
}  // namespace kestro
