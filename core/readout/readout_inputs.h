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

/// What the modules of the readout show. It only refers to the records: a null one has not been sampled yet,
/// and all are to be used before the next sample replaces them.
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

/// The record when it holds a reading, null while there is none. The processor is absent only before the first
/// sample: that one reads idle, as does every failing call, and an idle processor is shown as such. The others
/// are absent as well while their source gives nothing, because what would then be shown is invented: memory
/// and disk without a size, temperatures without a sensor (the record holds the presumed ones), the network
/// without an interface or an address. No battery and no sample yet read the same, so the power record always
/// counts.
const CPUTelemetry* sampled(const CPUTelemetry& cpu);
const MemoryTelemetry* sampled(const MemoryTelemetry& memory);
const ThermalTelemetry* sampled(const ThermalTelemetry& thermal);
const NetworkTelemetry* sampled(const NetworkTelemetry& network);
const DiskTelemetry* sampled(const DiskTelemetry& disk);

/// The inputs as everything stands now. Main thread.
ReadoutInputs readoutInputs(const TelemetryEngine& engine, const UserSettings& settings,
                            const FanControlManager& fanManager, const KeepAwakeManager& keepAwake,
                            const PowerModeManager& powerManager);

}  // namespace kestro
