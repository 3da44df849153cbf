#include "tests/core/engine/telemetry_engine_fixture.h"

#include <string>
#include <vector>

namespace kestro {
namespace {

using namespace std::chrono_literals;

TEST_F(TelemetryEngineTest, StopsSamplingWhenDestroyed) {
    engine();
    mac.advance(2s);
    const auto calls = mac.machHost.statisticsCalls();

    destroyEngine();
    mac.advance(1min);

    EXPECT_EQ(mac.machHost.statisticsCalls(), calls);
    EXPECT_TRUE(mac.runLoop.timerPeriods().empty());
}

TEST_F(TelemetryEngineTest, ASubscriberMustNotTakeAnotherSample) {
    const auto onPower = engine().power.subscribe([&](const auto&) { engine().sampleFull(); });

    EXPECT_DEATH(engine().sampleFull(), "isSampling_");
}

TEST_F(TelemetryEngineTest, ASubscriberMayRestartTheTimerInsideATick) {
    int ticks = 0;
    const auto subscription = engine().memory.subscribe([&](const auto&) {
        ++ticks;
        engine().restartTimer();
    });

    mac.advance(20s);

    EXPECT_EQ(ticks, 10);
    EXPECT_EQ(mac.runLoop.timerPeriods(), Periods{2000ms});
}

TEST_F(TelemetryEngineTest, ASubscriberMayHideTheWindowAgainAtOnce) {
    watchEverything();
    const auto subscription = engine().isUIActive.subscribe([&](bool active) {
        if (active) {
            engine().setUIActive(false);
        }
    });

    engine().setUIActive(true);

    EXPECT_FALSE(engine().isUIActive.get());
    EXPECT_EQ(mac.runLoop.timerPeriods(), Periods{2000ms});
    EXPECT_TRUE(published.empty());
}

TEST_F(TelemetryEngineTest, PublishesFallbacksWhenEverythingFails) {
    mac.smc.bytesFailure.always();
    mac.machHost.statisticsFailure.always();
    mac.machHost.processorInfoFailure.always();
    mac.hidEventSystem.servicesFailure.always();
    mac.fileSystem.failure.always();
    mac.networkInterfaces.interfacesFailure.always();
    mac.powerSources.failure.always();
    mac.commandRunner.failure.always();

    engine().sampleFull();
    mac.runPending();

    EXPECT_TRUE(engine().fans.get().empty());
    EXPECT_EQ(engine().memory.get().freeBytes, mac.processInfo.memory);
    EXPECT_EQ(engine().cpu.get().idleUsage, 100);
    EXPECT_EQ(engine().thermals.get(), ThermalTelemetry::initial());
    EXPECT_EQ(engine().disk.get(), DiskTelemetry::initial());
    EXPECT_EQ(engine().network.get(), NetworkTelemetry::initial());
    EXPECT_EQ(engine().power.get(), PowerTelemetry::initial());
    EXPECT_TRUE(engine().topProcesses.get().empty());
}

}  // namespace
}  // namespace kestro
