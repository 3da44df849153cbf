#include "shell/macos/mac_accessibility_monitor.h"

#include "tests/shell/macos/fake_app_kit.h"
#include "ui/theme/kestro_theme.h"
#include "ui/theme/motion.h"

#include <gtest/gtest.h>

#include <memory>

namespace kestro {
namespace {

struct MacAccessibilityMonitorTest : testing::Test {
    ~MacAccessibilityMonitorTest() override {
        KestroTheme::setHighContrast(false);
        motion::setReduced(false);
    }

    /// Whether something may be animated.
    static bool moves() { return motion::duration(motion::window) > 0; }

    test::FakeAccessibility accessibility;
};

TEST_F(MacAccessibilityMonitorTest, AppliesWhatIsSetAtStart) {
    accessibility.current = {.increasesContrast = true, .reducesMotion = true};

    const MacAccessibilityMonitor monitor(accessibility);

    EXPECT_TRUE(KestroTheme::isHighContrast());
    EXPECT_FALSE(moves());
}

TEST_F(MacAccessibilityMonitorTest, FollowsChangesUntilItsEnd) {
    auto monitor = std::make_unique<MacAccessibilityMonitor>(accessibility);
    EXPECT_FALSE(KestroTheme::isHighContrast());

    accessibility.current.increasesContrast = true;
    accessibility.change();
    EXPECT_TRUE(KestroTheme::isHighContrast());
    accessibility.current = {.increasesContrast = false, .reducesMotion = true};
    accessibility.change();
    EXPECT_FALSE(KestroTheme::isHighContrast());
    EXPECT_FALSE(moves());
    monitor.reset();

    EXPECT_FALSE(accessibility.change);
}

}  // namespace
}  // namespace kestro
