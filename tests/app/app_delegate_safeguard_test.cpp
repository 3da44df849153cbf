#include "tests/app/app_delegate_fixture.h"

#include <gtest/gtest.h>

#include <chrono>
#include <string>

namespace kestro {
namespace {

using namespace std::chrono_literals;
using AppDelegateSafeguard = test::AppDelegateFixture;

TEST_F(AppDelegateSafeguard, EndsKeepAwakeAtTheThreshold) {
    mac.powerSources.setBattery(20, false);
    launch();
    keepAwake.activate(KeepAwakeDuration::indefinite);

    click();

    EXPECT_FALSE(keepAwake.isActive.get());
    EXPECT_EQ(mac.assertionsHeld(), 0);
}

TEST_F(AppDelegateSafeguard, LeavesKeepAwakeAloneAboveItAndWhileCharging) {
    mac.powerSources.setBattery(21, false);
    launch();
    keepAwake.activate(KeepAwakeDuration::indefinite);
    click();
    EXPECT_TRUE(keepAwake.isActive.get());

    mac.powerSources.setBattery(5, true);
    mac.advance(2s);
    EXPECT_TRUE(keepAwake.isActive.get());
}

TEST_F(AppDelegateSafeguard, EndsKeepAwakeAtTheThresholdWithoutAnyWindow) {
    mac.powerSources.setBattery(60, false);
    launch();
    keepAwake.activate(KeepAwakeDuration::indefinite);
    mac.advance(1s);
    ASSERT_TRUE(keepAwake.isActive.get());

    mac.powerSources.setBattery(20, false);
    mac.advance(30s);

    EXPECT_FALSE(keepAwake.isActive.get());
    EXPECT_EQ(simulated.powerStatus().keepAwake.get().note,
              "Keep-awake is off because the battery is at 20 %, and its cut-off is 20 %.");
}

TEST_F(AppDelegateSafeguard, EndsAnActivationBelowTheThresholdAtOnce) {
    mac.powerSources.setBattery(15, false);
    launch();

    keepAwake.activate(KeepAwakeDuration::indefinite);
    mac.runPending();

    EXPECT_FALSE(keepAwake.isActive.get());
    EXPECT_EQ(mac.assertionsHeld(), 0);
    EXPECT_EQ(simulated.powerStatus().keepAwake.get().note,
              "Keep-awake is off because the battery is at 15 %, and its cut-off is 20 %.");
}

TEST_F(AppDelegateSafeguard, EndsSuchAnActivationAtOnceWhileTheReadoutShowsTheBattery) {
    mac.powerSources.setBattery(15, false);
    settings.activeMenubarModules.set({MenubarModuleType::battery});
    launch();
    mac.runPending();

    keepAwake.activate(KeepAwakeDuration::indefinite);
    mac.runPending();

    EXPECT_FALSE(keepAwake.isActive.get());
}

TEST_F(AppDelegateSafeguard, ReactsAtOnceWhenTheSystemAnnouncesAChange) {
    mac.powerSources.setBattery(10, true);
    launch();
    keepAwake.activate(KeepAwakeDuration::indefinite);
    mac.advance(1s);
    ASSERT_TRUE(keepAwake.isActive.get());

    mac.powerSources.setBattery(10, false);
    mac.powerEvents.announce();

    EXPECT_FALSE(keepAwake.isActive.get());
}

TEST_F(AppDelegateSafeguard, LeavesKeepAwakeAloneWhileHeldAtTheChargeLimit) {
    mac.powerSources.setBattery(18, false);
    mac.powerSources.descriptions.front()->at("Power Source State") = std::string("AC Power");
    launch();

    keepAwake.activate(KeepAwakeDuration::indefinite);
    mac.advance(61s);

    EXPECT_TRUE(keepAwake.isActive.get());
}

}  // namespace
}  // namespace kestro
