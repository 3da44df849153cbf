#include "ui/format/core_clusters.h"

namespace kestro {

bool hasSecondCluster(const CPUTelemetry& cpu) {
    return cpu.cluster1Count >= 1 && (cpu.coreCount == 0 || cpu.coreCount > cpu.cluster0Count);
}

std::string presentClusters(const CPUTelemetry& cpu) {
    if (hasSecondCluster(cpu)) {
        return cpu.clusterDescription();
    }
    CPUTelemetry first;
    first.cluster0Name = cpu.cluster0Name;
    first.cluster0Count = cpu.cluster0Count;
    return first.clusterDescription();
}

}  // namespace kestro
