#pragma once

#include "core/cooling/fan_control_manager.h"
#include "core/power/keep_awake_manager.h"
#include "core/power/power_mode_manager.h"
#include "core/power/power_status.h"
#include "core/settings/user_settings.h"
#include "tests/support/simulated_readers.h"
#include "ui/kestro_services.h"

#include <chrono>
#include <functional>
#include <memory>

namespace kestro {

/// A simulated machine with everything that observes and controls it, for tests and pictures of the surfaces. A
/// test that must prepare the machine or its preferences before the objects are created passes `arrange`.
struct SimulatedServices {
    SimulatedServices();
    explicit SimulatedServices(const std::function<void(SimulatedMac&)>& arrange);
    ~SimulatedServices();
    SimulatedServices(const SimulatedServices&) = delete;
    SimulatedServices& operator=(const SimulatedServices&) = delete;

    /// The references that the surfaces need.
    KestroServices services() {
        return {objects->engine,    objects->settings,     objects->fanManager,
                objects->keepAwake, objects->powerManager, objects->powerStatus};
    }

    TelemetryEngine& engine() { return objects->engine; }
    UserSettings& settings() { return objects->settings; }
    FanControlManager& fanManager() { return objects->fanManager; }
    KeepAwakeManager& keepAwake() { return objects->keepAwake; }
    PowerModeManager& powerManager() { return objects->powerManager; }
    PowerStatus& powerStatus() { return objects->powerStatus; }

    void advance(std::chrono::nanoseconds duration) { mac.advance(duration); }

    /// Advances to the state after half a minute with the dashboard open: full histories, processes listed,
    /// power mode read.
    void settle();

    struct Objects {
        explicit Objects(SimulatedMac& machine);

        UserSettings settings;
        SimulatedReaders readers;
        TelemetryEngine engine;
        FanControlManager fanManager;
        KeepAwakeManager keepAwake;
        PowerModeManager powerManager;
        PowerStatus powerStatus;
    };

    SimulatedMac mac;
    std::unique_ptr<Objects> objects;
};

}  // namespace kestro
