#include "tests/support/simulated_readers.h"

namespace kestro {

SimulatedReaders::SimulatedReaders(SimulatedMac& mac)
    : cpu(mac.machHost, mac.systemControl),
      memory(mac.machHost, mac.systemControl, mac.processInfo),
      disk(mac.fileSystem),
      network(mac.networkInterfaces, mac.clock),
      power(mac.powerSources),
      smc(mac.smc),
      thermal(mac.hidEventSystem, mac.processInfo),
      processes(mac.commandRunner) {}

SimulatedReaders::~SimulatedReaders() = default;

}  // namespace kestro
