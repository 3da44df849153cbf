#pragma once

#include "core/cooling/fan_curve.h"
#include "core/power/system_power_mode.h"
#include "core/telemetry/cpu_telemetry.h"
#include "core/telemetry/disk_telemetry.h"
#include "core/telemetry/fan_telemetry.h"
#include "core/telemetry/memory_telemetry.h"
#include "core/telemetry/network_telemetry.h"
#include "core/telemetry/power_telemetry.h"
#include "core/telemetry/thermal_telemetry.h"

#include <optional>
#include <span>

namespace kestro {

class FanControlManager;
class KeepAwakeManager;
class PowerModeManager;
class TelemetryEngine;
class UserSettings;

/// What the modules of the readout show. It only refers to the records: a null one has nothing to show, and all
/// are to be used before the next sample replaces them.
struct ReadoutInputs {
    const CPUTelemetry* cpu = nullptr;
    const MemoryTelemetry* memory = nullptr;
    std::span<const FanTelemetry> fans;
    const ThermalTelemetry* thermal = nullptr;
    const NetworkTelemetry* network = nullptr;
    const PowerTelemetry* power = nullptr;
    const DiskTelemetry* disk = nullptr;
    FanProfile fanProfile = FanProfile::normal;
    SystemPowerMode powerMode = SystemPowerMode::balanced;
    bool isKeepAwakeActive = false;
    std::optional<double> keepAwakeRemainingSeconds;
    bool showLabels = true;
};

/// The inputs as everything stands now. A record is absent before its first sample and only then, whatever the
/// reading says; but for memory and disk without a size, of which no share can be told. Main thread.
ReadoutInputs readoutInputs(const TelemetryEngine& engine, const UserSettings& settings,
                            const FanControlManager& fanManager, const KeepAwakeManager& keepAwake,
                            const PowerModeManager& powerManager);

}  // namespace kestro
