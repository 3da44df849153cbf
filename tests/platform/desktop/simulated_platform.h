#pragma once

#include "platform/simulated/simulated_mac.h"

namespace kestro::test {

/// The ports of a simulated machine, with other power assertions.
inline Platform platformWith(SimulatedMac& mac, PowerAssertions& assertions) {
    return {
        .clock = mac.clock,
        .runLoop = mac.runLoop,
        .machHost = mac.machHost,
        .systemControl = mac.systemControl,
        .processInfo = mac.processInfo,
        .fileSystem = mac.fileSystem,
        .networkInterfaces = mac.networkInterfaces,
        .powerSources = mac.powerSources,
        .smc = mac.smc,
        .hidEventSystem = mac.hidEventSystem,
        .commandRunner = mac.commandRunner,
        .scriptRunner = mac.scriptRunner,
        .powerAssertions = assertions,
        .powerEvents = mac.powerEvents,
        .powerModeService = mac.powerModeService,
        .userDefaults = mac.userDefaults,
        .notifications = mac.notifications,
        .fileEvents = mac.fileEvents,
    };
}

}  // namespace kestro::test
