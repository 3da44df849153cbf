#include "core/engine/telemetry_engine.h"

#include "tests/core/engine/telemetry_engine_fixture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <string>
#include <utility>
#include <vector>

namespace kestro {
namespace {

using namespace std::chrono_literals;

TEST_F(TelemetryEngineTest, StartsWithTheInitialRecordsAndTakesNoSample) {
    EXPECT_TRUE(engine().fans.get().empty());
    EXPECT_EQ(engine().thermals.get(), ThermalTelemetry::initial());
    EXPECT_EQ(engine().cpu.get(), CPUTelemetry::initial());
    EXPECT_EQ(engine().memory.get(), MemoryTelemetry::initial());
    EXPECT_EQ(engine().disk.get(), DiskTelemetry::initial());
    EXPECT_EQ(engine().network.get(), NetworkTelemetry::initial());
    EXPECT_EQ(engine().power.get(), PowerTelemetry::initial());
    EXPECT_TRUE(engine().topProcesses.get().empty());
    EXPECT_EQ(engine().cpuHistory.get(), std::vector<double>(30));
    EXPECT_EQ(engine().netDownHistory.get(), std::vector<double>(30));
    EXPECT_EQ(engine().netUpHistory.get(), std::vector<double>(30));
    EXPECT_FALSE(engine().isUIActive.get());
    EXPECT_EQ(mac.machHost.statisticsCalls(), 0);
    EXPECT_EQ(mac.machHost.processorInfoCalls(), 0);
}

TEST_F(TelemetryEngineTest, ChoosesThePeriodByProfileAndActivity) {
    EXPECT_EQ(periodsWith(PollingProfile::eco, true), Periods{1500ms});
    EXPECT_EQ(periodsWith(PollingProfile::eco, false), Periods{3000ms});
    EXPECT_EQ(periodsWith(PollingProfile::balanced, true), Periods{1000ms});
    EXPECT_EQ(periodsWith(PollingProfile::balanced, false), Periods{2000ms});
    EXPECT_EQ(periodsWith(PollingProfile::highPrecision, true), Periods{500ms});
    EXPECT_EQ(periodsWith(PollingProfile::highPrecision, false), Periods{1000ms});
}

TEST_F(TelemetryEngineTest, AdoptsAProfileChangeWhileAWindowIsVisible) {
    engine().setUIActive(true);

    settings.pollingProfile.set(PollingProfile::highPrecision);
    engine().restartTimer();
    EXPECT_EQ(mac.runLoop.timerPeriods(), Periods{500ms});
    engine().setUIActive(false);

    EXPECT_EQ(mac.runLoop.timerPeriods(), Periods{1000ms});
}

TEST_F(TelemetryEngineTest, SamplesAtOnceWhenAWindowAppearsButNotWhenItHides) {
    watchEverything();

    engine().setUIActive(true);
    const auto publishedOnShowing = std::exchange(published, {});
    engine().setUIActive(false);

    EXPECT_EQ(std::ranges::count(publishedOnShowing, "disk"), 1);
    EXPECT_TRUE(published.empty());
}

TEST_F(TelemetryEngineTest, RestartsAndSamplesOnceWhenActivatedTwiceInARow) {
    watchEverything();
    const auto scheduledBefore = mac.runLoop.scheduledTimers();

    engine().setUIActive(true);
    engine().setUIActive(true);

    EXPECT_EQ(mac.runLoop.scheduledTimers(), scheduledBefore + 1);
    EXPECT_EQ(std::ranges::count(published, "disk"), 1);
}

TEST_F(TelemetryEngineTest, PublishesTheNewActivityBeforeSampling) {
    std::vector<std::string> order;
    const auto activity = engine().isUIActive.subscribe([&](bool) { order.emplace_back("active"); });
    const auto sample = engine().fans.subscribe([&](const auto&) { order.emplace_back("fans"); });

    engine().setUIActive(true);

    EXPECT_EQ(order, (std::vector<std::string>{"active", "fans"}));
}

TEST_F(TelemetryEngineTest, PublishesAFullSampleInOrder) {
    watchEverything();

    engine().sampleFull();
    mac.runPending();

    EXPECT_EQ(published,
              (std::vector<std::string>{"fans", "memory", "thermals", "cpu", "disk", "network", "power",
                                        "cpuHistory", "netDownHistory", "netUpHistory", "topProcesses"}));
}

TEST_F(TelemetryEngineTest, PublishesWhatTheReadersRead) {
    engine().sampleFull();
    mac.advance(10s);
    engine().sampleFull();
    mac.runPending();

    ASSERT_EQ(engine().fans.get().size(), 2u);
    EXPECT_EQ(engine().fans.get()[0].name, "Left Fan");
    EXPECT_NEAR(engine().fans.get()[0].currentRPM, 1420, 30);
    EXPECT_NEAR(engine().memory.get().usedPercentage(), 42, 2);
    EXPECT_NEAR(engine().thermals.get().averageSoCTemp, 50, 3);
    EXPECT_EQ(engine().cpu.get().coreLoads.size(), 12u);
    EXPECT_GT(engine().cpu.get().totalUsage, 5);
    EXPECT_EQ(engine().disk.get().totalBytes, mac.fileSystem.root.blocks * 4096);
    EXPECT_GT(engine().network.get().downloadBytesPerSec, 100'000);
    EXPECT_EQ(engine().network.get().localIP, "192.168.1.24");
    EXPECT_EQ(engine().power.get().percentage, 87);
    EXPECT_EQ(engine().cpuHistory.get().back(), engine().cpu.get().totalUsage);
    EXPECT_EQ(engine().netDownHistory.get().back(), engine().network.get().downloadBytesPerSec);
    EXPECT_EQ(engine().netUpHistory.get().back(), engine().network.get().uploadBytesPerSec);
    EXPECT_FALSE(engine().topProcesses.get().empty());
}

TEST_F(TelemetryEngineTest, CompletesAllReadingsBeforeNotifying) {
    std::int64_t processorReadings = 0;
    const auto subscription =
        engine().fans.subscribe([&](const auto&) { processorReadings = mac.machHost.processorInfoCalls(); });

    engine().sampleFull();

    EXPECT_EQ(processorReadings, 1);
}

TEST_F(TelemetryEngineTest, TakesFullSamplesWhileAWindowIsVisible) {
    engine().setUIActive(true);
    watchEverything();

    mac.advance(3s);

    EXPECT_EQ(std::ranges::count(published, "disk"), 3);
    EXPECT_EQ(std::ranges::count(published, "cpuHistory"), 3);
}

TEST_F(TelemetryEngineTest, TakesOnlyLightSamplesWhileNothingIsVisible) {
    settings.menubarDisplayMode.set(MenubarDisplayMode::cpuOnly);
    watchEverything();

    mac.advance(4s);

    EXPECT_EQ(published, (std::vector<std::string>{"fans", "memory", "cpu", "fans", "memory", "cpu"}));
}

TEST_F(TelemetryEngineTest, ReadsTheCPUWhileIdleOnlyIfTheModeShowsIt) {
    for (const MenubarDisplayMode mode : allCases<MenubarDisplayMode>()) {
        settings.menubarDisplayMode.set(mode);
        const auto before = mac.machHost.processorInfoCalls();
        const bool shown = mode == MenubarDisplayMode::combined || mode == MenubarDisplayMode::tripleGlance ||
                           mode == MenubarDisplayMode::cpuOnly;

        engine();
        mac.advance(2s);

        EXPECT_EQ(mac.machHost.processorInfoCalls() - before, shown ? 1 : 0) << rawValue(mode);
    }
}

TEST_F(TelemetryEngineTest, ReadsTheCPUWhileIdleInAnyModeIfTheReadoutShowsIt) {
    settings.menubarDisplayMode.set(MenubarDisplayMode::memoryOnly);
    EXPECT_FALSE(engine().readsLoadWhileIdle());

    engine().setReadoutSources({TelemetrySource::cpu});
    EXPECT_TRUE(engine().readsLoadWhileIdle());
    mac.advance(4s);
    EXPECT_EQ(mac.machHost.processorInfoCalls(), 2);
    engine().setReadoutSources({});
    mac.advance(4s);

    EXPECT_EQ(mac.machHost.processorInfoCalls(), 2);
    EXPECT_EQ(settings.menubarDisplayMode.get(), MenubarDisplayMode::memoryOnly);
}

TEST_F(TelemetryEngineTest, ReadsTheCPUForTheModeEvenIfTheReadoutDoesNotShowIt) {
    settings.menubarDisplayMode.set(MenubarDisplayMode::cpuOnly);
    engine().setReadoutSources({TelemetrySource::cpu});

    engine().setReadoutSources({});
    mac.advance(2s);

    EXPECT_EQ(mac.machHost.processorInfoCalls(), 1);
}

TEST_F(TelemetryEngineTest, DoesNotRepublishTheCPUInMemoryOnlyMode) {
    settings.menubarDisplayMode.set(MenubarDisplayMode::memoryOnly);
    watchEverything();

    mac.advance(2s);

    EXPECT_EQ(published, (std::vector<std::string>{"fans", "memory"}));
}

TEST_F(TelemetryEngineTest, MeasuresTheCPUAcrossTheWholeIdlePeriod) {
    mac.freeze();
    settings.menubarDisplayMode.set(MenubarDisplayMode::memoryOnly);
    engine().sampleFull();
    for (std::size_t core = 0; core < mac.machHost.cores.size(); ++core) {
        mac.machHost.addTicks(core, {30, 0, 70, 0});
    }

    mac.advance(1h);
    engine().sampleFull();

    EXPECT_DOUBLE_EQ(engine().cpu.get().totalUsage, 30);
}

TEST_F(TelemetryEngineTest, TakesAFullSampleAtTheNextTickAfterActivation) {
    settings.menubarDisplayMode.set(MenubarDisplayMode::iconOnly);
    watchEverything();

    mac.advance(2s);
    engine().setUIActive(true);
    published.clear();
    mac.advance(1s);

    EXPECT_EQ(std::ranges::count(published, "disk"), 1);
}

TEST_F(TelemetryEngineTest, KeepsThirtyEntriesOfHistory) {
    std::vector<double> downloads;
    for (int sample = 0; sample < 31; ++sample) {
        mac.advance(1s);
        engine().sampleFull();
        downloads.push_back(engine().network.get().downloadBytesPerSec);
    }

    ASSERT_EQ(engine().netDownHistory.get().size(), 30u);
    EXPECT_EQ(engine().netDownHistory.get(), std::vector<double>(downloads.begin() + 1, downloads.end()));
    EXPECT_GT(engine().netDownHistory.get().front(), 0);
}

TEST_F(TelemetryEngineTest, AppendsTheNewestAtTheEndOfTheHistory) {
    engine().sampleFull();
    mac.advance(1s);
    engine().sampleFull();

    const auto& history = engine().netUpHistory.get();
    EXPECT_EQ(history.size(), 30u);
    EXPECT_GT(history[29], 0);
    EXPECT_EQ(history[28], 0);
}

TEST_F(TelemetryEngineTest, ForwardsThePinAndTheModeToTheSettings) {
    settings.isPinned.set(true);
    EXPECT_TRUE(engine().isPinned());
    engine().setPinned(false);
    EXPECT_FALSE(settings.isPinned.get());

    engine().setMenubarMode(MenubarDisplayMode::fansOnly);
    EXPECT_EQ(engine().menubarMode(), MenubarDisplayMode::fansOnly);
    EXPECT_EQ(settings.menubarDisplayMode.get(), MenubarDisplayMode::fansOnly);
    EXPECT_EQ(UserSettings(mac.userDefaults).menubarDisplayMode.get(), MenubarDisplayMode::fansOnly);
}

TEST_F(TelemetryEngineTest, WatchesPowerEveryHalfMinuteWhileIdle) {
    int samples = 0;
    const auto subscription = engine().power.subscribe([&](const PowerTelemetry&) { ++samples; });
    mac.advance(60s);
    EXPECT_EQ(samples, 0);

    engine().setWatchesPower(true);
    EXPECT_EQ(samples, 0) << "the caller may be inside a notification";
    mac.runPending();
    EXPECT_EQ(samples, 1);
    mac.advance(60s);
    EXPECT_EQ(samples, 3);
    mac.powerEvents.announce();
    EXPECT_EQ(samples, 4);

    engine().setWatchesPower(false);
    mac.advance(60s);
    EXPECT_EQ(samples, 4);
    EXPECT_FALSE(mac.powerEvents.isWatched());
}

}  // namespace
}  // namespace kestro
