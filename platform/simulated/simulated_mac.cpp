#include "platform/simulated/simulated_mac.h"

namespace kestro {

SimulatedMac::SimulatedMac() : platform_(Platform::of(*this)) {}

SimulatedMac::~SimulatedMac() = default;

}  // namespace kestro
