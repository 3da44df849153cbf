#include "tests/core/power/keep_awake_fixture.h"

#include <gtest/gtest.h>

#include <chrono>
#include <optional>
#include <vector>

namespace kestro {
namespace {

using namespace std::chrono_literals;

using Fixture = KeepAwakeFixture;

TEST(KeepAwakeManager, RunsIndefinitelyWithoutATimer) {
    Fixture f;

    f.manager.activate(KeepAwakeDuration::indefinite);
    f.mac.advance(100h);

    EXPECT_TRUE(f.manager.isActive.get());
    EXPECT_EQ(f.manager.remainingSeconds.get(), std::nullopt);
    EXPECT_EQ(f.mac.runLoop.scheduledTimers(), 0);
}

TEST(KeepAwakeManager, CountsDownOnceASecond) {
    Fixture f;
    std::vector<double> seen;
    const auto subscription = f.manager.remainingSeconds.subscribe(
        [&](const std::optional<double>& remaining) { seen.push_back(remaining.value_or(-1)); });

    f.manager.activate(KeepAwakeDuration::minutes15);
    f.mac.advance(2500ms);

    EXPECT_EQ(seen, (std::vector{900.0, 899.0, 898.0}));
    EXPECT_EQ(f.manager.currentDuration.get(), KeepAwakeDuration::minutes15);
}

TEST(KeepAwakeManager, EndsWhenTheTimeIsUp) {
    Fixture f;

    f.manager.activate(KeepAwakeDuration::minutes15);
    f.mac.advance(899s);
    EXPECT_TRUE(f.manager.isActive.get());
    EXPECT_EQ(f.manager.remainingSeconds.get(), 1.0);
    f.mac.advance(1s);

    EXPECT_FALSE(f.manager.isActive.get());
    EXPECT_EQ(f.manager.remainingSeconds.get(), std::nullopt);
    EXPECT_EQ(f.mac.assertionsHeld(), 0U);
    EXPECT_EQ(f.timers(), 0U);
    EXPECT_EQ(f.manager.currentDuration.get(), KeepAwakeDuration::minutes15);
}

TEST(KeepAwakeManager, EndsByTheWallClockAfterSuspend) {
    Fixture f;

    f.manager.activate(KeepAwakeDuration::hours1);
    f.mac.clock.setWall(f.mac.clock.wallNow() + 2h);
    f.mac.advance(1s);

    EXPECT_FALSE(f.manager.isActive.get());
}

TEST(KeepAwakeManager, CancelsTheTimerWhenRestartedIndefinitely) {
    Fixture f;
    f.manager.activate(KeepAwakeDuration::minutes15);

    f.manager.activate(KeepAwakeDuration::indefinite);
    f.mac.advance(2h);

    EXPECT_TRUE(f.manager.isActive.get());
    EXPECT_EQ(f.manager.remainingSeconds.get(), std::nullopt);
    EXPECT_EQ(f.timers(), 0U);
}

TEST(KeepAwakeManager, FormatsTheRemainingTimeInMinutesAndSeconds) {
    Fixture f;

    EXPECT_EQ(f.remainingAfter(4h - 1s - 845s), "14m 05s");
    EXPECT_EQ(f.remainingAfter(4h - 1s - 3599s - 400ms), "59m 59s");
    EXPECT_EQ(f.remainingAfter(4h - 1s - 59s), "0m 59s");
    EXPECT_EQ(f.remainingAfter(4h - 1s - 300ms), "0m 00s");
}

TEST(KeepAwakeManager, FormatsTheRemainingTimeInHoursFromOneHourOn) {
    Fixture f;

    EXPECT_EQ(f.remainingAfter(4h - 1s - 3600s), "1h 00m");
    EXPECT_EQ(f.remainingAfter(4h - 1s - 7199s), "1h 59m");
}

TEST(KeepAwakeManager, FormatsTheStateWithoutARemainingTime) {
    Fixture f;

    EXPECT_EQ(f.manager.formattedRemainingTime(), "Off");
    f.manager.activate(KeepAwakeDuration::indefinite);
    EXPECT_EQ(f.manager.formattedRemainingTime(), "Active (∞)");
    f.manager.deactivate();

    EXPECT_EQ(f.manager.formattedRemainingTime(), "Off");
}

}  // namespace
}  // namespace kestro
