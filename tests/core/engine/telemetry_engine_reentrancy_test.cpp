#include "tests/core/engine/telemetry_engine_fixture.h"

#include <string>
#include <utility>
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

TEST_F(TelemetryEngineTest, ASubscriberMayTriggerANestedSample) {
    mac.freeze();
    int samples = 0;
    const auto subscription = engine().fans.subscribe([&](const auto&) {
        if (++samples == 1) {
            engine().sampleFull();
        }
    });

    engine().sampleFull();

    EXPECT_EQ(samples, 2);
    ASSERT_EQ(engine().fans.get().size(), 2u);
    EXPECT_EQ(engine().fans.get()[1].currentRPM, 1460);
    EXPECT_EQ(engine().cpuHistory.get().size(), 30u);
}

TEST_F(TelemetryEngineTest, PublishesNothingOlderAfterANestedSample) {
    mac.freeze();
    engine().sampleFull();
    const auto coreTicks = [&](std::uint32_t busy) {
        for (std::size_t core = 0; core < mac.machHost.cores.size(); ++core) {
            mac.machHost.addTicks(core, {busy, 0, 100 - busy, 0});
        }
    };
    bool asked = false;
    const auto onFans = engine().fans.subscribe([&](const auto&) {
        if (!std::exchange(asked, true)) {
            coreTicks(70);
            mac.fileSystem.root.blocks += 1000;
            engine().sampleFull();
        }
    });
    std::vector<double> usages;
    std::vector<std::uint64_t> sizes;
    std::vector<double> entered;
    const auto onCPU = engine().cpu.subscribe([&](const auto& newest) { usages.push_back(newest.totalUsage); });
    const auto onDisk = engine().disk.subscribe([&](const auto& newest) { sizes.push_back(newest.totalBytes); });
    const auto onHistory =
        engine().cpuHistory.subscribe([&](const auto& newest) { entered.push_back(newest.back()); });
    coreTicks(30);

    engine().sampleFull();

    EXPECT_EQ(usages, std::vector<double>{70});
    EXPECT_EQ(sizes, std::vector<std::uint64_t>{mac.fileSystem.root.blocks * 4096});
    EXPECT_EQ(entered, std::vector<double>{70});
}

TEST_F(TelemetryEngineTest, AbandonsALightSampleWhenAFanSubscriberShowsAWindow) {
    settings.menubarDisplayMode.set(MenubarDisplayMode::cpuOnly);
    settings.showTopProcesses.set(false);
    const auto onFans = engine().fans.subscribe([&](const auto&) { engine().setUIActive(true); });
    watch(engine().memory, "memory");
    watch(engine().cpu, "cpu");
    watch(engine().power, "power");

    mac.advance(2s);

    EXPECT_EQ(published, (std::vector<std::string>{"memory", "cpu", "power"}));
    EXPECT_EQ(mac.machHost.statisticsCalls(), 1);
    EXPECT_EQ(mac.machHost.processorInfoCalls(), 1);
}

TEST_F(TelemetryEngineTest, AbandonsALightSampleWhenAMemorySubscriberShowsAWindow) {
    settings.menubarDisplayMode.set(MenubarDisplayMode::cpuOnly);
    settings.showTopProcesses.set(false);
    const auto onMemory = engine().memory.subscribe([&](const auto&) { engine().setUIActive(true); });
    watch(engine().cpu, "cpu");

    mac.advance(2s);

    EXPECT_EQ(published, std::vector<std::string>{"cpu"});
    EXPECT_EQ(mac.machHost.processorInfoCalls(), 1);
}

TEST_F(TelemetryEngineTest, TheHistoryEndsWithTheNewestReadingWhenTheLastPropertyTriggersASample) {
    mac.freeze();
    engine().sampleFull();
    bool asked = false;
    const auto onPower = engine().power.subscribe([&](const auto&) {
        if (!std::exchange(asked, true)) {
            for (std::size_t core = 0; core < mac.machHost.cores.size(); ++core) {
                mac.machHost.addTicks(core, {70, 0, 30, 0});
            }
            engine().sampleFull();
        }
    });
    watch(engine().cpuHistory, "cpuHistory");

    engine().sampleFull();

    EXPECT_EQ(published, std::vector<std::string>{"cpuHistory"});
    EXPECT_EQ(engine().cpuHistory.get().back(), 70);
    EXPECT_EQ(mac.runLoop.startedBackgroundTasks(TaskPriority::userInitiated), 2) << "one listing per sample";
}

TEST_F(TelemetryEngineTest, TheHistoriesStayInStepWhenASubscriberOfTheFirstTriggersASample) {
    mac.freeze();
    engine().sampleFull();
    bool asked = false;
    const auto onHistory = engine().cpuHistory.subscribe([&](const auto&) {
        if (!std::exchange(asked, true)) {
            engine().sampleFull();
        }
    });
    watch(engine().cpuHistory, "cpuHistory");
    watch(engine().netDownHistory, "netDownHistory");
    watch(engine().netUpHistory, "netUpHistory");

    engine().sampleFull();

    EXPECT_EQ(published, (std::vector<std::string>{"cpuHistory", "netDownHistory", "netUpHistory", "cpuHistory",
                                                   "netDownHistory", "netUpHistory"}));
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
