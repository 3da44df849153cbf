#pragma once

#include "core/model/fan_curve.h"
#include "core/model/system_power_mode.h"
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

/// What the readout's modules show. Does not own the records: a null one has nothing to show, and all must be used
/// before the next sample replaces them.
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

/// The current inputs. A record is null only before its first sample, whatever it reads; memory and disk also when
/// their size is 0, because no share can be computed; processor and network also while their load and rates are
/// not measured over about one tick. Main thread.
ReadoutInputs readoutInputs(const TelemetryEngine& engine, const UserSettings& settings,
                            const FanControlManager& fanManager, const KeepAwakeManager& keepAwake,
                            const PowerModeManager& powerManager);

}  // namespace kestro
