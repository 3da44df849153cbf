#include "core/readout/readout_inputs.h"

#include "core/power/keep_awake_manager.h"
#include "core/power/power_mode_manager.h"
#include "core/readout/menubar_readout.h"
#include "tests/core/cooling/fan_control_fixture.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace kestro {
namespace {

/// Everything that the readout draws on, on a still machine.
struct Fixture : FanControlFixture {
    KeepAwakeManager keepAwake{mac.platform(), settings};
    PowerModeManager powerManager{mac.platform()};

    ReadoutInputs inputs() { return readoutInputs(engine, settings, manager(), keepAwake, powerManager); }
    void showProcessorModules() {
        settings.activeMenubarModules.set({MenubarModuleType::cpuUsage, MenubarModuleType::cpuClusters});
    }
    std::string title() { return composeReadout(ReadoutLayout::of(settings), inputs()).title; }
};

TEST(ReadoutInputs, TakesWhatStandsBeforeTheFirstSampleForAbsent) {
    const auto cpu = CPUTelemetry::initial();
    const auto memory = MemoryTelemetry::initial();
    const auto thermal = ThermalTelemetry::initial();
    const auto network = NetworkTelemetry::initial();
    const auto disk = DiskTelemetry::initial();

    EXPECT_EQ(sampled(cpu), nullptr);
    EXPECT_EQ(sampled(memory), nullptr);
    EXPECT_EQ(sampled(thermal), nullptr);
    EXPECT_EQ(sampled(network), nullptr);
    EXPECT_EQ(sampled(disk), nullptr);
}

TEST(ReadoutInputs, TakesALoadForKnownOnceAReadingWasTaken) {
    auto cpu = CPUTelemetry::initial();
    cpu.coreCount = 4;

    EXPECT_EQ(sampled(cpu), &cpu);
}

TEST(ReadoutInputs, ShowAnIdleProcessorAfterTheFirstReading) {
    Fixture f;
    f.showProcessorModules();
    EXPECT_EQ(f.title(), "CPU -- · P:-- E:--");

    f.engine.sampleFull();

    EXPECT_EQ(f.title(), "CPU 0% · P:0% E:0%");
}

TEST(ReadoutInputs, ShowAnIdleProcessorAfterACallThatFailed) {
    Fixture f;
    f.showProcessorModules();
    f.mac.machHost.processorInfoFailure.always();

    f.engine.sampleFull();

    EXPECT_EQ(f.title(), "CPU 0% · P:0% E:0%");
}

TEST(ReadoutInputs, TakesRecordsWithAReadingForSamples) {
    MemoryTelemetry memory;
    memory.totalBytes = 1;
    auto thermal = ThermalTelemetry::initial();
    thermal.sensorCount = 1;
    auto network = NetworkTelemetry::initial();
    network.primaryInterface = "wlan0";
    auto disk = DiskTelemetry::initial();
    disk.totalBytes = 1;

    EXPECT_EQ(sampled(memory), &memory);
    EXPECT_EQ(sampled(thermal), &thermal);
    EXPECT_EQ(sampled(network), &network);
    EXPECT_EQ(sampled(disk), &disk);
}

TEST(ReadoutInputs, HaveNoReadingsBeforeTheFirstSample) {
    Fixture f;

    EXPECT_EQ(f.title(), " RAM -- · 0 RPM");
}

TEST(ReadoutInputs, ReferToTheEnginesRecords) {
    Fixture f;
    f.engine.sampleFull();
    f.mac.advance(std::chrono::seconds(2));
    f.engine.sampleFull();

    const auto inputs = f.inputs();

    EXPECT_EQ(inputs.cpu, &f.engine.cpu.get());
    EXPECT_EQ(inputs.memory, &f.engine.memory.get());
    EXPECT_EQ(inputs.fans.data(), f.engine.fans.get().data());
    EXPECT_EQ(inputs.fans.size(), 2U);
    EXPECT_EQ(inputs.thermal, &f.engine.thermals.get());
    EXPECT_EQ(inputs.network, &f.engine.network.get());
    EXPECT_EQ(inputs.power, &f.engine.power.get());
    EXPECT_EQ(inputs.disk, &f.engine.disk.get());
}

TEST(ReadoutInputs, FollowTheManagersAndTheLabels) {
    Fixture f;
    f.manager().selectProfile(FanProfile::turbo);
    f.keepAwake.activate(KeepAwakeDuration::minutes15);
    f.mac.commandRunner.powerMode = 2;
    f.mac.runPending();
    f.settings.showMenubarLabels.set(false);

    const auto inputs = f.inputs();

    EXPECT_EQ(inputs.fanProfile, FanProfile::turbo);
    EXPECT_EQ(inputs.powerMode, SystemPowerMode::highPower);
    EXPECT_TRUE(inputs.isKeepAwakeActive);
    EXPECT_EQ(inputs.keepAwakeRemainingSeconds, 900);
    EXPECT_FALSE(inputs.showLabels);
}

}  // namespace
}  // namespace kestro
