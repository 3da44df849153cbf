#include "core/telemetry/cpu_telemetry.h"

#include <fmt/format.h>

namespace kestro {

CPUTelemetry CPUTelemetry::initial() {
    CPUTelemetry record;
    record.idleUsage = 100;
    record.cluster0Name = "Performance";
    record.cluster1Name = "Efficiency";
    record.cluster0Count = 6;
    record.cluster1Count = 12;
    record.coreCount = 18;
    return record;
}

std::string CPUTelemetry::clusterDescription() const {
    if (cluster1Count < 1) {
        return fmt::format("{} {}", cluster0Count, cluster0Name);
    }
    return fmt::format("{} {} + {} {}", cluster0Count, cluster0Name, cluster1Count, cluster1Name);
}

}  // namespace kestro
