#include "tests/support/simulated_services.h"

namespace kestro {

SimulatedServices::SimulatedServices() : SimulatedServices([](SimulatedMac&) {}) {}

SimulatedServices::SimulatedServices(const std::function<void(SimulatedMac&)>& arrange) {
    arrange(mac);
    objects = std::make_unique<Objects>(mac);
}

SimulatedServices::~SimulatedServices() = default;

void SimulatedServices::settle() {
    objects->engine.setUIActive(true);
    mac.advance(std::chrono::seconds(40));
}

SimulatedServices::Objects::Objects(SimulatedMac& machine)
    : settings(machine.userDefaults),
      readers(machine),
      engine(machine.platform(), settings, readers.all()),
      fanManager(machine.platform(), settings, engine, readers.smc),
      keepAwake(machine.platform(), settings),
      powerManager(machine.platform()),
      powerStatus(machine.platform(), settings, engine, keepAwake, powerManager) {}

}  // namespace kestro
