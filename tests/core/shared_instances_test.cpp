#include "core/cooling/fan_control_manager.h"
#include "core/engine/telemetry_engine.h"
#include "core/power/keep_awake_manager.h"
#include "core/power/power_mode_manager.h"
#include "core/settings/user_settings.h"
#include "core/telemetry/smc_reader.h"
#include "platform/simulated/simulated_mac.h"

#include <gtest/gtest.h>

#include <chrono>

namespace kestro {
namespace {

using namespace std::chrono_literals;

/// The machine behind the shared objects, which live as long as the process: a change made by one test is visible
/// to the others.
SimulatedMac& sharedMac() {
    static auto* const mac = [] {
        auto* const machine = new SimulatedMac;
        machine->freeze();
        machine->powerSources.setBattery(57, false);
        Platform::install(machine->platform());
        return machine;
    }();
    return *mac;
}

TEST(SharedInstances, AreCreatedOnce) {
    sharedMac();

    EXPECT_EQ(&UserSettings::shared(), &UserSettings::shared());
    EXPECT_EQ(&SMCReader::shared(), &SMCReader::shared());
    EXPECT_EQ(&TelemetryEngine::shared(), &TelemetryEngine::shared());
    EXPECT_EQ(&FanControlManager::shared(), &FanControlManager::shared());
    EXPECT_EQ(&KeepAwakeManager::shared(), &KeepAwakeManager::shared());
    EXPECT_EQ(&PowerModeManager::shared(), &PowerModeManager::shared());
}

TEST(SharedInstances, TheEngineReadsTheInstalledPlatform) {
    SimulatedMac& mac = sharedMac();
    TelemetryEngine& engine = TelemetryEngine::shared();

    engine.sampleFull();
    mac.runPending();

    EXPECT_EQ(engine.fans.get().size(), 2u);
    EXPECT_EQ(engine.power.get().percentage, 57);
    EXPECT_GT(engine.memory.get().totalBytes, 0u);
    EXPECT_GT(engine.disk.get().totalBytes, 0u);
    EXPECT_FALSE(engine.topProcesses.get().empty());
}

TEST(SharedInstances, TheManagersShareTheSettingsAndTheEngine) {
    SimulatedMac& mac = sharedMac();
    FanControlManager& fans = FanControlManager::shared();

    fans.applyPreset(CurvePreset::quietStudio);
    mac.advance(1s);

    EXPECT_EQ(UserSettings::shared().fanProfile.get(), FanProfile::custom);
    EXPECT_EQ(fans.evaluatedLeftTargetRPM.get(),
              fans.leftCurve.get().evaluateRPM(TelemetryEngine::shared().thermals.get().averageSoCTemp));
}

TEST(SharedInstances, KeepAwakeHoldsAnAssertionOfTheInstalledPlatform) {
    SimulatedMac& mac = sharedMac();

    KeepAwakeManager::shared().activate(KeepAwakeDuration::indefinite);
    EXPECT_EQ(mac.assertionsHeld(), 1);

    KeepAwakeManager::shared().deactivate();
    EXPECT_EQ(mac.assertionsHeld(), 0);
}

TEST(SharedInstances, ThePowerModeIsSwitchedOnTheInstalledPlatform) {
    SimulatedMac& mac = sharedMac();
    PowerModeManager& manager = PowerModeManager::shared();

    manager.setPowerMode(SystemPowerMode::lowPower);
    mac.runPending();

    EXPECT_EQ(manager.currentMode.get(), SystemPowerMode::lowPower);
}

}  // namespace
}  // namespace kestro
