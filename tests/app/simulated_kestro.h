#pragma once

#include "tests/support/simulated_services.h"

namespace kestro::test {

/// Everything behind the application, by name, on a simulated machine that is at rest.
struct SimulatedKestro {
    SimulatedServices simulated;
    SimulatedMac& mac = simulated.mac;
    UserSettings& settings = simulated.settings();
    SMCReader& smc = simulated.objects->readers.smc;
    TelemetryEngine& engine = simulated.engine();
    FanControlManager& fanManager = simulated.fanManager();
    KeepAwakeManager& keepAwake = simulated.keepAwake();
    PowerModeManager& powerManager = simulated.powerManager();
    PowerStatus& powerStatus = simulated.powerStatus();

    SimulatedKestro() { mac.freeze(); }

    KestroServices services() { return simulated.services(); }
};

}  // namespace kestro::test
