#include "shell/macos/mac_compositing.h"

#include "core/settings/user_settings.h"
#include "platform/simulated/simulated_user_defaults.h"
#include "shell/macos/screen_coordinates.h"
#include "tests/shell/macos/fake_app_kit.h"

#include <QCoreApplication>
#include <QWindowStateChangeEvent>

#include <gtest/gtest.h>

#include <memory>

namespace kestro {
namespace {

struct MacCompositingTest : testing::Test {
    SimulatedUserDefaults defaults;
    UserSettings settings{defaults};
    test::FakeVisualEffects effects;
    MacCompositing compositing{effects, settings};
    std::unique_ptr<QWindow> window = std::make_unique<QWindow>();

    MacCompositingTest() {
        window->resize(330, 325);
        window->show();
    }
    test::FakeVisualEffects::Pane* pane() {
        const auto found = effects.panes.find(static_cast<NativeView>(window->winId()));
        return found == effects.panes.end() ? nullptr : &found->second;
    }
};

TEST_F(MacCompositingTest, LaysGlassOfTheChosenMaterialBehindTheRegion) {
    const QRegion region = QRegion(10, 0, 310, 5) + QRegion(0, 5, 330, 320);
    compositing.requestBlurBehind(*window, region);

    ASSERT_NE(pane(), nullptr);
    EXPECT_EQ(pane()->material, 21);
    EXPECT_EQ(pane()->parts, (std::vector<NativeRect>{{10, 320, 310, 5}, {0, 0, 330, 320}}));
}

TEST_F(MacCompositingTest, FollowsTheMaterialInTheSettings) {
    compositing.requestBlurBehind(*window, QRect(0, 0, 330, 325));

    settings.glassMaterial.set(GlassMaterialStyle::hudContrast);
    EXPECT_EQ(pane()->material, 13);
    settings.glassMaterial.set(GlassMaterialStyle::subtleTint);

    EXPECT_EQ(pane()->material, 6);
}

TEST_F(MacCompositingTest, TakesTheGlassAwayWithTheRequest) {
    compositing.requestBlurBehind(*window, QRect(0, 0, 330, 325));

    compositing.requestBlurBehind(*window, {});

    EXPECT_EQ(pane(), nullptr);
}

TEST_F(MacCompositingTest, LaysTheGlassAgainOnceAWindowHasChangedItsState) {
    compositing.requestBlurBehind(*window, QRect(0, 0, 330, 325));
    const auto laid = effects.panes;
    QWindowStateChangeEvent change(Qt::WindowFullScreen);

    QCoreApplication::sendEvent(window.get(), &change);
    // AppKit builds another frame when the window's look is restored.
    effects.panes.clear();
    QCoreApplication::processEvents();

    EXPECT_EQ(effects.panes, laid);
}

TEST_F(MacCompositingTest, LeavesTheGlassOfOtherWindowsAlone) {
    QWindow other;
    compositing.requestBlurBehind(*window, QRect(0, 0, 330, 325));
    compositing.requestBlurBehind(other, QRect(0, 0, 330, 325));
    QWindowStateChangeEvent change(Qt::WindowFullScreen);

    QCoreApplication::sendEvent(&other, &change);
    effects.panes.clear();
    QCoreApplication::processEvents();

    EXPECT_EQ(pane(), nullptr);
    EXPECT_EQ(effects.panes.size(), 1U);
}

TEST_F(MacCompositingTest, MakesNoWindowForItsGlass) {
    compositing.requestBlurBehind(*window, QRect(0, 0, 330, 325));
    QWindowStateChangeEvent change(Qt::WindowFullScreen);
    QCoreApplication::sendEvent(window.get(), &change);

    window->destroy();
    QCoreApplication::processEvents();

    EXPECT_EQ(window->handle(), nullptr);
}

TEST_F(MacCompositingTest, LaysNoGlassBehindWindowsThatGaveItUp) {
    compositing.requestBlurBehind(*window, QRect(0, 0, 330, 325));
    compositing.requestBlurBehind(*window, {});
    QWindowStateChangeEvent change(Qt::WindowFullScreen);

    QCoreApplication::sendEvent(window.get(), &change);
    QCoreApplication::processEvents();

    EXPECT_EQ(pane(), nullptr);
}

TEST_F(MacCompositingTest, AWindowMayEndAfterItHasChangedItsState) {
    compositing.requestBlurBehind(*window, QRect(0, 0, 330, 325));
    QWindowStateChangeEvent change(Qt::WindowFullScreen);
    QCoreApplication::sendEvent(window.get(), &change);
    effects.panes.clear();

    window.reset();
    QCoreApplication::processEvents();

    EXPECT_TRUE(effects.panes.empty());
}

TEST_F(MacCompositingTest, ForgetsDestroyedWindows) {
    compositing.requestBlurBehind(*window, QRect(0, 0, 330, 325));
    window->destroy();
    settings.glassMaterial.set(GlassMaterialStyle::hudContrast);
    window.reset();

    settings.glassMaterial.set(GlassMaterialStyle::subtleTint);

    EXPECT_EQ(effects.panes.size(), 1U) << "which AppKit destroys with the window";
    EXPECT_EQ(effects.panes.begin()->second.material, 21);
}

TEST_F(MacCompositingTest, WindowsAreAlwaysBlended) {
    EXPECT_TRUE(compositing.isAvailable());
    EXPECT_TRUE(compositing.canBlurBehind());
    EXPECT_FALSE(compositing.canChange());
    EXPECT_FALSE(compositing.cutTo(*window, QRegion(0, 0, 10, 10)));
}

TEST(ScreenCoordinates, DividePixelsByTheScale) {
    EXPECT_EQ(screen_coordinates::partsOfView(QRegion(3, 10, 620, 30), 325, 2),
              (std::vector<NativeRect>{{1.5, 305, 310, 15}}));
}

TEST(ScreenCoordinates, TurnUpsideDown) {
    // The menu bar of a screen above the primary one.
    EXPECT_EQ(screen_coordinates::fromNative({-200, 1976, 90, 24}, 900), QRect(-200, -1100, 90, 24));
    EXPECT_EQ(screen_coordinates::toNative({5, 880}, 900), (NativePoint{5, 20}));
}

}  // namespace
}  // namespace kestro
