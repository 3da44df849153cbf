#pragma once

#include "core/cooling/fan_control_manager.h"
#include "core/power/keep_awake_manager.h"
#include "core/power/power_mode_manager.h"
#include "core/settings/user_settings.h"
#include "tests/support/simulated_readers.h"
#include "ui/kestro_services.h"

namespace kestro {

/// A simulated machine with everything that observes and controls it, for tests and pictures of the surfaces. A
/// test that must prepare the machine or its preferences before the objects are created passes `arrange`.
struct SimulatedServices {
    SimulatedServices() : SimulatedServices([](SimulatedMac&) {}) {}

    template <typename Arrange>
    explicit SimulatedServices(Arrange&& arrange) {
        arrange(mac);
        objects = std::make_unique<Objects>(mac);
    }

    /// The references that the surfaces need.
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

    /// Advances to the state after half a minute with the dashboard open: full histories, processes listed,
    /// power mode read.
    void settle() {
        objects->engine.setUIActive(true);
        mac.advance(std::chrono::seconds(40));
    }

    struct Objects {
        explicit Objects(SimulatedMac& machine)
            : settings(machine.userDefaults),
              readers(machine),
              engine(machine.platform(), settings, readers.all()),
              fanManager(machine.platform(), settings, engine, readers.smc),
              keepAwake(machine.platform(), settings),
              powerManager(machine.platform()) {}

        UserSettings settings;
        SimulatedReaders readers;
        TelemetryEngine engine;
        FanControlManager fanManager;
        KeepAwakeManager keepAwake;
        PowerModeManager powerManager;
    };

    SimulatedMac mac;
    std::unique_ptr<Objects> objects;
};

}  // namespace kestro
