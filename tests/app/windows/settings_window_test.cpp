#include "app/windows/settings_window.h"

#include "app/windows/window_geometry.h"
#include "tests/app/windows/plain_window_system.h"
#include "tests/app/windows/recording_window_delegate.h"

#include <QGuiApplication>
#include <QScreen>

#include <gtest/gtest.h>

namespace kestro {
namespace {

TEST(SettingsWindow, AppearsInTheMiddleOfTheScreen) {
    test::RecordingWindowDelegate delegate;
    test::PlainWindowSystem system;
    const QRect available = QGuiApplication::primaryScreen()->availableGeometry();

    const SettingsWindow window(delegate, system, {});

    EXPECT_EQ(window.geometry(), centred(settingsWindowSize(available), available));
    EXPECT_EQ(window.windowTitle(), QStringLiteral("Kestro Preferences"));
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
