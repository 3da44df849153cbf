#include "core/telemetry/thermal_telemetry.h"

namespace kestro {

std::string_view ThermalTelemetry::statusSummary() const {
    if (peakDieTemp >= 95.0) {
        return "Critical";
    }
    if (peakDieTemp >= 80.0) {
        return "Elevated";
    }
    if (peakDieTemp >= 60.0) {
        return "Nominal";
    }
    return "Cool";
}

}  // namespace kestro
