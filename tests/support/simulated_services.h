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

namespace kestro {

/// A simulated machine with everything that observes and drives it, for tests and pictures of the surfaces.
/// A test that must arrange the machine or its preferences before the objects are made passes `arrange`.
struct SimulatedServices {
    SimulatedServices() : SimulatedServices([](SimulatedMac&) {}) {}

    template <typename Arrange>
    explicit SimulatedServices(Arrange&& arrange) {
        arrange(mac);
        objects = std::make_unique<Objects>(mac);
    }

    /// The references that the surfaces take.
    KestroServices services() {
        return {objects->engine, objects->settings, objects->fanManager, objects->keepAwake,
                objects->powerManager};
    }

    TelemetryEngine& engine() { return objects->engine; }
    UserSettings& settings() { return objects->settings; }
    FanControlManager& fanManager() { return objects->fanManager; }
    KeepAwakeManager& keepAwake() { return objects->keepAwake; }
    PowerModeManager& powerManager() { return objects->powerManager; }

    void advance(std::chrono::nanoseconds duration) { mac.advance(duration); }

    /// As after half a minute with the dashboard open: full histories, processes listed, power mode read.
    void settle() {
        objects->engine.setUIActive(true);
        mac.advance(std::chrono::seconds(40));
    }

    struct Objects {
        explicit Objects(SimulatedMac& machine)
            : settings(machine.userDefaults),
              cpu(machine.machHost, machine.systemControl),
              memory(machine.machHost, machine.systemControl, machine.processInfo),
              disk(machine.fileSystem),
              network(machine.networkInterfaces, machine.clock),
              power(machine.powerSources),
              smc(machine.smc),
              thermal(machine.hidEventSystem, machine.processInfo),
              processes(machine.commandRunner),
              engine(machine.platform(), settings,
                     TelemetryReaders{cpu, memory, disk, network, power, smc, thermal, processes}),
              fanManager(machine.platform(), settings, engine, smc),
              keepAwake(machine.platform(), settings),
              powerManager(machine.platform()) {}

        UserSettings settings;
        CPUReader cpu;
        MemoryReader memory;
        DiskReader disk;
        NetworkReader network;
        PowerReader power;
        SMCReader smc;
        ThermalReader thermal;
        ProcessReader processes;
        TelemetryEngine engine;
        FanControlManager fanManager;
        KeepAwakeManager keepAwake;
        PowerModeManager powerManager;
    };

    SimulatedMac mac;
    std::unique_ptr<Objects> objects;
};

}  // namespace kestro
