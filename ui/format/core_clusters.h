#pragma once

#include "core/telemetry/cpu_telemetry.h"

#include <string>

namespace kestro {

/// Whether the machine has a second kind of core. A reader keeps that cluster's default count when the system
/// reports none, so this checks whether there are more cores than the first cluster holds.
bool hasSecondCluster(const CPUTelemetry& cpu);

/// "8 Performance + 4 Efficiency", without clusters that the machine does not have.
std::string presentClusters(const CPUTelemetry& cpu);

}  // namespace kestro
