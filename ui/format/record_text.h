#pragma once

#include "core/telemetry/cpu_telemetry.h"

#include <QString>

#include <string>

namespace kestro {

class KeepAwakeManager;
struct PowerTelemetry;

/// Whether the machine has a second kind of core. A reader keeps that cluster's default count when the system
/// reports none, so this checks whether there are more cores than the first cluster holds.
bool hasSecondCluster(const CPUTelemetry& cpu);

/// "8 Performance + 4 Efficiency", without clusters that the machine does not have.
std::string presentClusters(const CPUTelemetry& cpu);

/// The symbol of the power source: a bolt while charging, a plug, or the battery.
QString powerSymbol(const PowerTelemetry& power);

/// The whole minutes left in a session, "14m"; empty without a session, or if it has no end.
QString keepAwakeMinutes(const KeepAwakeManager& manager);

}  // namespace kestro
