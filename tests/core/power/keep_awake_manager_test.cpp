#include "core/power/keep_awake_manager.h"

#include "tests/core/power/keep_awake_fixture.h"

#include <gtest/gtest.h>

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace kestro {
namespace {

using namespace std::chrono_literals;

constexpr auto display = KeepAwakeTarget::displayAndSystem;
constexpr auto systemOnly = KeepAwakeTarget::systemOnly;

using Fixture = KeepAwakeFixture;

TEST(KeepAwakeManager, StartsInactive) {
    Fixture f;

    EXPECT_FALSE(f.manager.isActive.get());
    EXPECT_EQ(f.manager.currentDuration.get(), KeepAwakeDuration::indefinite);
    EXPECT_EQ(f.manager.remainingSeconds.get(), std::nullopt);
    EXPECT_EQ(f.manager.targetMode.get(), display);
    EXPECT_EQ(f.mac.powerAssertions.created(), 0U);
    EXPECT_EQ(f.timers(), 0U);
}

TEST(KeepAwakeManager, LoadsTheStoredTarget) {
    SimulatedMac mac;
    UserSettings settings(mac.userDefaults);
    settings.keepAwakeTargetMode.set(systemOnly);

    const KeepAwakeManager manager(mac.platform(), settings);

    EXPECT_EQ(manager.targetMode.get(), systemOnly);
}

TEST(KeepAwakeManager, HoldsANamedAssertionOfTheTargetsType) {
    Fixture f;

    f.manager.activate(KeepAwakeDuration::indefinite);

    ASSERT_EQ(f.mac.assertionsHeld(), 1U);
    const auto assertion = f.mac.powerAssertions.held().front();
    EXPECT_EQ(assertion.type, "PreventUserIdleDisplaySleep");
    EXPECT_EQ(assertion.level, 255U);
    EXPECT_EQ(assertion.name, "Kestro Keep-Awake Active");
}

TEST(KeepAwakeManager, PublishesAndStoresAGivenTargetBeforeRequestingTheAssertion) {
    Fixture f;

    f.manager.activate(KeepAwakeDuration::minutes15, systemOnly);

    EXPECT_EQ(f.manager.targetMode.get(), systemOnly);
    EXPECT_EQ(f.settings.keepAwakeTargetMode.get(), systemOnly);
    EXPECT_EQ(f.mac.userDefaults.writes("kestro.keepAwakeTargetMode"), 1);
    EXPECT_EQ(f.mac.powerAssertions.held().front().type, "PreventUserIdleSystemSleep");
}

TEST(KeepAwakeManager, StoresNoTargetIfNoneIsGiven) {
    Fixture f;

    f.manager.activate(KeepAwakeDuration::minutes15);

    EXPECT_EQ(f.mac.userDefaults.totalWrites(), 0);
}

TEST(KeepAwakeManager, ReleasesTheOldAssertionBeforeRequestingTheNew) {
    Fixture f;
    f.manager.activate(KeepAwakeDuration::minutes15);
    f.mac.advance(60s);

    f.manager.activate(KeepAwakeDuration::hours1);

    EXPECT_EQ(f.mac.assertionsHeld(), 1U);
    EXPECT_EQ(f.mac.powerAssertions.created(), 2U);
    EXPECT_EQ(f.manager.remainingSeconds.get(), 3600.0);
    EXPECT_EQ(f.timers(), 1U);
}

TEST(KeepAwakeManager, StaysInactiveWhenRefused) {
    Fixture f;
    f.mac.powerAssertions.refusal.always();
    int published = 0;
    const auto first = f.manager.isActive.subscribe([&](const bool&) { ++published; });
    const auto second = f.manager.currentDuration.subscribe([&](const KeepAwakeDuration&) { ++published; });
    const auto third = f.manager.remainingSeconds.subscribe([&](const std::optional<double>&) { ++published; });

    f.manager.activate(KeepAwakeDuration::minutes30);

    EXPECT_FALSE(f.manager.isActive.get());
    EXPECT_EQ(published, 0);
    EXPECT_EQ(f.timers(), 0U);
}

TEST(KeepAwakeManager, KeepsItsPublishedStateWhenARestartIsRefused) {
    Fixture f;
    f.manager.activate(KeepAwakeDuration::minutes15);
    f.mac.powerAssertions.refusal.times(1);

    f.manager.activate(KeepAwakeDuration::hours2, systemOnly);
    f.mac.advance(1h);

    EXPECT_TRUE(f.manager.isActive.get());
    EXPECT_EQ(f.manager.currentDuration.get(), KeepAwakeDuration::minutes15);
    EXPECT_EQ(f.manager.remainingSeconds.get(), 900.0);
    EXPECT_EQ(f.manager.targetMode.get(), systemOnly);
    EXPECT_EQ(f.mac.assertionsHeld(), 0U);
    EXPECT_EQ(f.timers(), 0U);
}

TEST(KeepAwakeManager, RecoversFromARefusedRestart) {
    Fixture f;
    f.manager.activate(KeepAwakeDuration::minutes15);
    f.mac.powerAssertions.refusal.times(1);
    f.manager.activate(KeepAwakeDuration::hours2);

    f.manager.toggle();
    EXPECT_FALSE(f.manager.isActive.get());
    f.manager.toggle();

    EXPECT_TRUE(f.manager.isActive.get());
    EXPECT_EQ(f.mac.assertionsHeld(), 1U);
}

TEST(KeepAwakeManager, DeactivatesInOrder) {
    Fixture f;
    f.manager.activate(KeepAwakeDuration::minutes15, systemOnly);
    std::vector<std::string> order;
    const auto first =
        f.manager.isActive.subscribe([&](const bool& active) { order.push_back(active ? "active" : "inactive"); });
    const auto second = f.manager.remainingSeconds.subscribe([&](const std::optional<double>& remaining) {
        order.push_back((remaining ? "remaining, held " : "no remaining, held ") +
                        std::to_string(f.mac.assertionsHeld()));
    });

    f.manager.deactivate();

    EXPECT_EQ(order, (std::vector<std::string>{"no remaining, held 0", "inactive"}));
    EXPECT_EQ(f.manager.currentDuration.get(), KeepAwakeDuration::minutes15);
    EXPECT_EQ(f.manager.targetMode.get(), systemOnly);
}

TEST(KeepAwakeManager, ActivatesInOrder) {
    Fixture f;
    std::vector<std::string> order;
    const auto target = f.manager.targetMode.subscribe([&](const KeepAwakeTarget&) { order.push_back("target"); });
    const auto stored =
        f.settings.keepAwakeTargetMode.subscribe([&](const KeepAwakeTarget&) { order.push_back("stored"); });
    const auto active = f.manager.isActive.subscribe([&](const bool&) { order.push_back("active"); });
    const auto duration =
        f.manager.currentDuration.subscribe([&](const KeepAwakeDuration&) { order.push_back("duration"); });
    const auto remaining =
        f.manager.remainingSeconds.subscribe([&](const std::optional<double>&) { order.push_back("remaining"); });

    f.manager.activate(KeepAwakeDuration::hours4, systemOnly);

    EXPECT_EQ(order, (std::vector<std::string>{"target", "stored", "active", "duration", "remaining"}));
}

TEST(KeepAwakeManager, TogglesWithTheDefaultDurationInsteadOfTheLastOne) {
    Fixture f;
    f.settings.defaultKeepAwakeDuration.set(KeepAwakeDuration::hours2);
    f.manager.activate(KeepAwakeDuration::minutes15);

    f.manager.toggle();
    EXPECT_FALSE(f.manager.isActive.get());
    f.manager.toggle();

    EXPECT_TRUE(f.manager.isActive.get());
    EXPECT_EQ(f.manager.currentDuration.get(), KeepAwakeDuration::hours2);
    EXPECT_EQ(f.mac.userDefaults.writes("kestro.keepAwakeTargetMode"), 0);
}

TEST(KeepAwakeManager, RestartsWithItsFullDurationForAnotherTarget) {
    Fixture f;
    f.manager.activate(KeepAwakeDuration::minutes30);
    f.mac.advance(600s);

    f.manager.setTargetMode(systemOnly);

    EXPECT_EQ(f.manager.remainingSeconds.get(), 1800.0);
    EXPECT_EQ(f.settings.keepAwakeTargetMode.get(), systemOnly);
    ASSERT_EQ(f.mac.assertionsHeld(), 1U);
    EXPECT_EQ(f.mac.powerAssertions.held().front().type, "PreventUserIdleSystemSleep");
}

TEST(KeepAwakeManager, DoesNotRestartForTheSameTarget) {
    Fixture f;
    f.manager.activate(KeepAwakeDuration::minutes30);
    f.manager.setTargetMode(systemOnly);
    const auto created = f.mac.powerAssertions.created();
    const auto writes = f.mac.userDefaults.totalWrites();

    f.manager.setTargetMode(systemOnly);

    EXPECT_EQ(f.mac.powerAssertions.created(), created);
    EXPECT_EQ(f.mac.userDefaults.totalWrites(), writes);
}

TEST(KeepAwakeManager, OnlyStoresATargetWhileInactive) {
    Fixture f;

    f.manager.setTargetMode(systemOnly);

    EXPECT_EQ(f.manager.targetMode.get(), systemOnly);
    EXPECT_EQ(f.mac.userDefaults.writes("kestro.keepAwakeTargetMode"), 1);
    EXPECT_EQ(f.mac.powerAssertions.created(), 0U);
}

TEST(KeepAwakeManager, LetsASubscriberStopAPeriodThatJustStarted) {
    Fixture f;
    const auto subscription = f.manager.isActive.subscribe([&](const bool& active) {
        if (active) {
            f.manager.deactivate();
        }
    });

    f.manager.activate(KeepAwakeDuration::hours1);

    EXPECT_FALSE(f.manager.isActive.get());
    EXPECT_EQ(f.manager.remainingSeconds.get(), std::nullopt);
    EXPECT_EQ(f.mac.assertionsHeld(), 0U);
    EXPECT_EQ(f.timers(), 0U);
}

TEST(KeepAwakeManager, LetsASubscriberRestartAPeriodThatJustStopped) {
    Fixture f;
    f.manager.activate(KeepAwakeDuration::hours1);
    const auto subscription = f.manager.remainingSeconds.subscribe([&](const std::optional<double>& remaining) {
        if (!remaining) {
            f.manager.activate(KeepAwakeDuration::minutes15);
        }
    });

    f.manager.deactivate();

    EXPECT_TRUE(f.manager.isActive.get());
    EXPECT_EQ(f.manager.currentDuration.get(), KeepAwakeDuration::minutes15);
    EXPECT_EQ(f.manager.remainingSeconds.get(), 900.0);
    EXPECT_EQ(f.mac.assertionsHeld(), 1U);
    EXPECT_EQ(f.timers(), 1U);
}

}  // namespace
}  // namespace kestro
