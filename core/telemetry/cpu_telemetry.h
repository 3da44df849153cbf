#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace kestro {

/// One logical core, identified by its index in the kernel's order.
struct CoreLoad {
    std::int64_t id = 0;
    std::string clusterName;  ///< "Super" in the first cluster, "Perf" in every other; not the hardware's name
    bool isSuperCluster = false;
    double usagePercentage = 0;  ///< 0..100

    std::optional<std::int64_t> kernelNumber = std::nullopt;  ///< absent: the kernel numbers its cores by `id`
    bool isOnline = true;

    /// The number under which the kernel and its tools know the core.
    std::int64_t number() const { return kernelNumber.value_or(id); }

    friend bool operator==(const CoreLoad&, const CoreLoad&) = default;
};

/// One machine-wide processor sample. Usages in percent, 0..100.
struct CPUTelemetry {
    double totalUsage = 0;
    double systemUsage = 0;
    double userUsage = 0;
    double idleUsage = 0;
    /// In core order, for cores present in both this sample and the last successful one; empty for the first
    /// sample and for a failed one. Includes cores that are offline, at 0 %; no mean does.
    std::vector<CoreLoad> coreLoads;
    double cluster0Usage = 0;
    double cluster1Usage = 0;
    std::string cluster0Name;
    std::string cluster1Name;
    std::int64_t cluster0Count = 0;
    std::int64_t cluster1Count = 0;
    std::int64_t coreCount = 0;  ///< logical cores reported by the last sample

    /// Shown before the first sample.
    static CPUTelemetry initial();

    double superClusterUsage() const { return cluster0Usage; }
    double performanceClusterUsage() const { return cluster1Usage; }

    /// "6 Performance + 12 Efficiency", or "10 Performance" without a second cluster.
    std::string clusterDescription() const;

    friend bool operator==(const CPUTelemetry&, const CPUTelemetry&) = default;
};

}  // namespace kestro
