#pragma once

#include "core/telemetry/cpu_telemetry.h"

#include <string>

namespace kestro {

/// Whether the machine has cores of a second kind. A reader keeps that cluster's default count where the system
/// names none, so what counts is whether there are more cores than the first cluster holds.
bool hasSecondCluster(const CPUTelemetry& cpu);

/// "8 Performance + 4 Efficiency", without a cluster that the machine does not have.
std::string presentClusters(const CPUTelemetry& cpu);

}  // namespace kestro
