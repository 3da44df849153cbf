#include "tests/core/power/keep_awake_fixture.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace kestro {
namespace {

using Fixture = KeepAwakeFixture;

TEST(KeepAwakeManager, StopsAtTheBatteryThreshold) {
    Fixture f;
    f.manager.activate(KeepAwakeDuration::indefinite);

    f.manager.checkBatterySafeguard(21, false);
    EXPECT_TRUE(f.manager.isActive.get());
    f.manager.checkBatterySafeguard(20, false);

    EXPECT_FALSE(f.manager.isActive.get());
    EXPECT_EQ(f.mac.assertionsHeld(), 0U);
}

TEST(KeepAwakeManager, UsesTheThresholdFromTheSettings) {
    Fixture f;
    f.settings.keepAwakeBatteryThreshold.set(50);
    f.manager.activate(KeepAwakeDuration::indefinite);

    f.manager.checkBatterySafeguard(50, false);

    EXPECT_FALSE(f.manager.isActive.get());
}

TEST(KeepAwakeManager, NeverStopsWhileCharging) {
    Fixture f;
    f.manager.activate(KeepAwakeDuration::indefinite);

    f.manager.checkBatterySafeguard(1, true);

    EXPECT_TRUE(f.manager.isActive.get());
}

TEST(KeepAwakeManager, NeverStopsWithTheSafeguardOff) {
    Fixture f;
    f.settings.keepAwakeAutoDisableOnBattery.set(false);
    f.manager.activate(KeepAwakeDuration::indefinite);

    f.manager.checkBatterySafeguard(1, false);

    EXPECT_TRUE(f.manager.isActive.get());
}

TEST(KeepAwakeManager, PublishesNothingForALowBatteryWhileInactive) {
    Fixture f;
    int published = 0;
    const auto subscription = f.manager.isActive.subscribe([&](const bool&) { ++published; });

    f.manager.checkBatterySafeguard(1, false);

    EXPECT_EQ(published, 0);
}

TEST(KeepAwakeManager, StopsWhenTheSystemRevokesTheAssertion) {
    Fixture f;
    f.manager.activate(KeepAwakeDuration::hours1);

    f.mac.powerAssertions.revoke(f.mac.powerAssertions.created());

    EXPECT_FALSE(f.manager.isActive.get());
    EXPECT_EQ(f.manager.remainingSeconds.get(), std::nullopt);
    EXPECT_EQ(f.timers(), 0U);
}

TEST(KeepAwakeManager, IgnoresTheRevocationOfAnEarlierAssertion) {
    struct LateRefusal final : PowerAssertions {
        std::optional<PowerAssertionID> create(const std::string&, std::uint32_t, const std::string&) override {
            return ++last;
        }
        void release(PowerAssertionID) override {}
        void setRevocationHandler(std::function<void(PowerAssertionID)> newest) override { handler = newest; }
        PowerAssertionReport report() const override { return {}; }
        void setReportHandler(std::function<void()>) override {}
        std::function<void(PowerAssertionID)> handler;
        PowerAssertionID last = 0;
    } assertions;
    SimulatedMac mac;
    UserSettings settings(mac.userDefaults);
    const auto& ports = mac.platform();
    const Platform platform{
        ports.clock,         ports.runLoop,        ports.machHost,          ports.systemControl,
        ports.processInfo,   ports.fileSystem,     ports.networkInterfaces, ports.powerSources,
        ports.smc,           ports.hidEventSystem, ports.commandRunner,     ports.scriptRunner,
        assertions,          ports.powerEvents,    ports.powerModeService,  ports.userDefaults,
        ports.notifications, ports.fileEvents};
    KeepAwakeManager manager(platform, settings);
    assertions.handler(0);
    manager.activate(KeepAwakeDuration::indefinite);
    manager.activate(KeepAwakeDuration::indefinite);

    assertions.handler(1);
    assertions.handler(0);

    EXPECT_TRUE(manager.isActive.get());
    assertions.handler(2);
    EXPECT_FALSE(manager.isActive.get());
}

TEST(KeepAwakeManager, ReleasesEverythingWhenDestroyed) {
    Fixture f;
    f.manager.activate(KeepAwakeDuration::hours1);

    f.made.reset();

    EXPECT_EQ(f.mac.assertionsHeld(), 0U);
    EXPECT_EQ(f.timers(), 0U);
    EXPECT_FALSE(f.mac.powerAssertions.hasRevocationHandler());
}

}  // namespace
}  // namespace kestro
