#pragma once

#include "core/telemetry/cpu_telemetry.h"

#include <cstdint>
#include <mutex>
#include <span>
#include <string>
#include <vector>

namespace kestro {

class MachHost;
class SystemControl;
struct ProcessorLoadInfo;

/// Converts the kernel's cumulative ticks into the load between two readings. Owns the previous reading's counter
/// array until the next one replaces it. Concurrent calls are serialised; otherwise bound to the threads of its
/// ports.
class CPUReader {
public:
    /// Queries the sizes and names of the hardware's two clusters, and again whenever the host arranges its cores
    /// anew; missing values keep their defaults.
    CPUReader(MachHost& host, SystemControl& system);
    CPUReader(const CPUReader&) = delete;
    CPUReader& operator=(const CPUReader&) = delete;

    /// The process-wide reader on the current platform, created on first use.
    static CPUReader& shared();

    /// The load since the previous call. The first call and a failed one read as idle without cores; after a
    /// failure the next call measures across the gap. If the host identifies its cores, no mean includes one
    /// without any ticks since, because it was not online.
    CPUTelemetry readCPU();

    /// The same, but into an existing record, reusing its storage.
    void readCPU(CPUTelemetry& record);

private:
    struct Sums;

    void queryClusters();
    void beginIdle(CPUTelemetry& record) const;
    void matchCores(const ProcessorLoadInfo& load);
    Sums measureCores(const ProcessorLoadInfo& load, CPUTelemetry& record) const;
    double addCore(std::span<const std::int32_t> now, std::size_t previous, int cluster, bool isIdentified,
                   Sums& sums) const;
    void replacePrevious(std::span<std::int32_t> info);

    MachHost& host_;
    SystemControl& system_;
    std::span<std::int32_t> previousCpuInfo_;  ///< null data before the first successful reading
    std::uint32_t arrangement_ = 0;
    std::vector<std::uint32_t> numbers_;     ///< the kernel's, in the current arrangement; empty: not reported
    std::vector<std::size_t> previousSlot_;  ///< of each core in the previous array; empty: the same
    std::mutex lock_;
    std::int64_t cluster0Count_ = 6;
    std::int64_t cluster1Count_ = 12;
    std::string cluster0Name_ = "Performance";
    std::string cluster1Name_ = "Efficiency";
};

}  // namespace kestro
