#include "platform/simulated/simulated_mac.h"

namespace kestro {

SimulatedMac::SimulatedMac()
    : platform_{
          .clock = clock,
          .runLoop = runLoop,
          .machHost = machHost,
          .systemControl = systemControl,
          .processInfo = processInfo,
          .fileSystem = fileSystem,
          .networkInterfaces = networkInterfaces,
          .powerSources = powerSources,
          .smc = smc,
          .hidEventSystem = hidEventSystem,
          .commandRunner = commandRunner,
          .scriptRunner = scriptRunner,
          .powerAssertions = powerAssertions,
          .powerEvents = powerEvents,
          .powerModeService = powerModeService,
          .userDefaults = userDefaults,
          .notifications = notifications,
          .fileEvents = fileEvents,
      } {}

SimulatedMac::~SimulatedMac() = default;

}  // namespace kestro
