#pragma once

#include "core/cooling/fan_control_manager.h"
#include "core/engine/telemetry_engine.h"
#include "core/power/keep_awake_manager.h"
#include "core/power/power_mode_manager.h"
#include "core/settings/user_settings.h"
#include "core/telemetry/cpu_reader.h"
#include "core/telemetry/disk_reader.h"
#include "core/telemetry/memory_reader.h"
#include "core/telemetry/network_reader.h"
#include "core/telemetry/power_reader.h"
#include "core/telemetry/process_reader.h"
#include "core/telemetry/smc_reader.h"
#include "core/telemetry/thermal_reader.h"
#include "platform/simulated/simulated_mac.h"
#include "ui/kestro_services.h"

namespace kestro::testing {

/// Everything behind the application, on a simulated machine that holds still.
struct SimulatedKestro {
    SimulatedMac mac;
    UserSettings settings{mac.userDefaults};
    CPUReader cpu{mac.machHost, mac.systemControl};
    MemoryReader memory{mac.machHost, mac.systemControl, mac.processInfo};
    DiskReader disk{mac.fileSystem};
    NetworkReader network{mac.networkInterfaces, mac.clock};
    PowerReader power{mac.powerSources};
    SMCReader smc{mac.smc};
    ThermalReader thermal{mac.hidEventSystem, mac.processInfo};
    ProcessReader processes{mac.commandRunner};
    TelemetryEngine engine{mac.platform(), settings, {cpu, memory, disk, network, power, smc, thermal, processes}};
    FanControlManager fanManager{mac.platform(), settings, engine, smc};
    KeepAwakeManager keepAwake{mac.platform(), settings};
    PowerModeManager powerManager{mac.platform()};

    SimulatedKestro() { mac.freeze(); }

    KestroServices services() { return {engine, settings, fanManager, keepAwake, powerManager}; }
};

}  // namespace kestro::testing
