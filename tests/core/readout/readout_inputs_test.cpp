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

/// Everything that the readout depends on, on a frozen machine.
struct Fixture : FanControlFixture {
    KeepAwakeManager keepAwake{mac.platform(), settings};
    PowerModeManager powerManager{mac.platform()};

    ReadoutInputs inputs() { return inputs(engine); }
    ReadoutInputs inputs(const TelemetryEngine& source) {
        return readoutInputs(source, settings, manager(), keepAwake, powerManager);
    }
    void sampleASecondLater() {
        mac.advance(std::chrono::seconds(1));
        engine.sampleFull();
    }
    void showProcessorModules() {
        settings.activeMenubarModules.set({MenubarModuleType::cpuUsage, MenubarModuleType::cpuClusters});
    }
    std::string title() { return title(engine); }
    std::string title(const TelemetryEngine& source) {
        return composeReadout(ReadoutLayout::of(settings), inputs(source)).title;
    }
};

TEST(ReadoutInputs, AreAbsentBeforeTheFirstSample) {
    Fixture f;

    const auto inputs = f.inputs();

    EXPECT_EQ(inputs.cpu, nullptr);
    EXPECT_EQ(inputs.memory, nullptr);
    EXPECT_TRUE(inputs.fans.empty());
    EXPECT_EQ(inputs.thermal, nullptr);
    EXPECT_EQ(inputs.network, nullptr);
    EXPECT_EQ(inputs.power, nullptr);
    EXPECT_EQ(inputs.disk, nullptr);
}

TEST(ReadoutInputs, HoldOnlyWhatALightSampleReads) {
    Fixture f;
    f.settings.menubarDisplayMode.set(MenubarDisplayMode::memoryOnly);

    f.mac.advance(std::chrono::seconds(2));
    const auto inputs = f.inputs();

    EXPECT_EQ(inputs.memory, &f.engine.memory.get());
    EXPECT_EQ(inputs.fans.size(), 2U);
    EXPECT_EQ(inputs.cpu, nullptr);
    EXPECT_EQ(inputs.thermal, nullptr);
    EXPECT_EQ(inputs.network, nullptr);
    EXPECT_EQ(inputs.power, nullptr);
    EXPECT_EQ(inputs.disk, nullptr);
}

TEST(ReadoutInputs, ShowTheLoadBetweenTwoReadings) {
    Fixture f;
    f.showProcessorModules();
    EXPECT_EQ(f.title(), "CPU -- · P:-- E:--");

    f.engine.sampleFull();
    EXPECT_EQ(f.title(), "CPU -- · P:-- E:--") << "nothing is measured yet";
    f.sampleASecondLater();

    EXPECT_EQ(f.title(), "CPU 0% · P:0% E:0%");
}

TEST(ReadoutInputs, ShowAnIdleCPUAfterAFailedCall) {
    Fixture f;
    f.showProcessorModules();
    f.mac.machHost.processorInfoFailure.always();

    f.engine.sampleFull();
    f.sampleASecondLater();

    EXPECT_EQ(f.title(), "CPU 0% · P:0% E:0%");
}

TEST(ReadoutInputs, ShowAReadingThatEqualsTheInitialRecord) {
    Fixture f;
    f.showProcessorModules();
    f.mac.systemControl.integers["hw.perflevel0.physicalcpu"] = 6;
    f.mac.systemControl.integers["hw.perflevel1.physicalcpu"] = 12;
    f.mac.machHost.cores.resize(18);
    f.mac.machHost.coreLoads.resize(18);
    SimulatedReaders readers(f.mac);
    TelemetryEngine engine(f.mac.platform(), f.settings, readers.all());

    engine.sampleFull();
    f.mac.advance(std::chrono::seconds(1));
    engine.sampleFull();
    for (const auto& core : engine.cpu.get().coreLoads) {
        EXPECT_EQ(core.usagePercentage, 0);
    }
    CPUTelemetry withoutCores = engine.cpu.get();
    withoutCores.coreLoads.clear();

    EXPECT_EQ(withoutCores, CPUTelemetry::initial());
    EXPECT_EQ(f.title(engine), "CPU 0% · P:0% E:0%");
}

TEST(ReadoutInputs, ShowTheRecordsFallbackWithoutSensors) {
    Fixture f;
    f.settings.activeMenubarModules.set({MenubarModuleType::thermal});
    EXPECT_EQ(f.title(), "--°C");
    f.mac.hidEventSystem.sensors.clear();

    f.engine.sampleFull();
    EXPECT_EQ(f.title(), "50°C");
    f.mac.hidEventSystem.servicesFailure.always();
    f.engine.sampleFull();

    EXPECT_EQ(f.title(), "45°C");
}

TEST(ReadoutInputs, ShowNoTrafficWithoutInterfaces) {
    Fixture f;
    f.settings.activeMenubarModules.set({MenubarModuleType::network});
    EXPECT_EQ(f.title(), "↓-- ↑--");
    f.mac.networkInterfaces.interfacesFailure.always();

    f.engine.sampleFull();
    f.sampleASecondLater();

    EXPECT_EQ(f.engine.network.get(), NetworkTelemetry::initial());
    EXPECT_EQ(f.title(), "↓0 ↑0");
}

TEST(ReadoutInputs, ShowNoShareOfMemoryAndDiskWithoutASize) {
    Fixture f;
    f.settings.activeMenubarModules.set({MenubarModuleType::memory, MenubarModuleType::diskSpace});
    f.mac.fileSystem.failure.always();
    f.mac.machHost.statisticsFailure.always();
    f.mac.processInfo.memory = 0;
    SimulatedReaders readers(f.mac);
    TelemetryEngine engine(f.mac.platform(), f.settings, readers.all());

    engine.sampleFull();

    EXPECT_EQ(f.title(engine), "RAM -- · SSD --");
}

TEST(ReadoutInputs, ShowPlaceholdersBeforeTheFirstSample) {
    Fixture f;

    EXPECT_EQ(f.title(), " RAM -- · 0 RPM");
}

TEST(ReadoutInputs, PointToTheEnginesRecords) {
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

TEST(ReadoutInputs, ReflectTheManagersAndTheLabels) {
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
