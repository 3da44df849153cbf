#include "core/readout/readout_inputs.h"

#include "core/cooling/fan_control_manager.h"
#include "core/engine/telemetry_engine.h"
#include "core/power/keep_awake_manager.h"
#include "core/power/power_mode_manager.h"
#include "core/settings/user_settings.h"

namespace kestro {

const CPUTelemetry* sampled(const CPUTelemetry& cpu) {
    return cpu == CPUTelemetry::initial() ? nullptr : &cpu;
}

const MemoryTelemetry* sampled(const MemoryTelemetry& memory) {
    return memory.totalBytes == 0 ? nullptr : &memory;
}

const ThermalTelemetry* sampled(const ThermalTelemetry& thermal) {
    return thermal.sensorCount == 0 ? nullptr : &thermal;
}

const NetworkTelemetry* sampled(const NetworkTelemetry& network) {
    return network == NetworkTelemetry::initial() ? nullptr : &network;
}

const DiskTelemetry* sampled(const DiskTelemetry& disk) {
    return disk.totalBytes == 0 ? nullptr : &disk;
}

ReadoutInputs readoutInputs(const TelemetryEngine& engine, const UserSettings& settings,
                            const FanControlManager& fanManager, const KeepAwakeManager& keepAwake,
                            const PowerModeManager& powerManager) {
    ReadoutInputs inputs;
    inputs.cpu = sampled(engine.cpu.get());
    inputs.memory = sampled(engine.memory.get());
    inputs.fans = engine.fans.get();
    inputs.thermal = sampled(engine.thermals.get());
    inputs.network = sampled(engine.network.get());
    inputs.power = &engine.power.get();
    inputs.disk = sampled(engine.disk.get());
    inputs.fanProfile = fanManager.currentProfile.get();
    inputs.powerMode = powerManager.currentMode.get();
    inputs.isKeepAwakeActive = keepAwake.isActive.get();
    inputs.keepAwakeRemainingSeconds = keepAwake.remainingSeconds.get();
    inputs.showLabels = settings.showMenubarLabels.get();
    return inputs;
}

}  // namespace kestro
