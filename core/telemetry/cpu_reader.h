#pragma once

#include "core/telemetry/cpu_telemetry.h"

#include <cstdint>
#include <mutex>
#include <span>
#include <string>

namespace kestro {

class MachHost;
class SystemControl;

/// Converts the kernel's cumulative ticks into the load between two readings. Owns the previous reading's counter
/// array until the next one replaces it. Concurrent calls are serialised; otherwise bound to the threads of its
/// ports.
class CPUReader {
public:
    /// Queries the sizes and names of the hardware's two clusters; missing values keep their defaults.
    CPUReader(MachHost& host, SystemControl& system);
    CPUReader(const CPUReader&) = delete;
    CPUReader& operator=(const CPUReader&) = delete;

    /// The process-wide reader on the current platform, created on first use.
    static CPUReader& shared();

    /// The load since the previous call. The first call and a failed one read as idle without cores; after a
    /// failure the next call measures across the gap.
    CPUTelemetry readCPU();

    /// The same, but into an existing record, reusing its storage.
    void readCPU(CPUTelemetry& record);

private:
    struct Sums;

    void beginIdle(CPUTelemetry& record) const;
    Sums measureCores(std::span<const std::int32_t> info, std::size_t cores, CPUTelemetry& record) const;
    void replacePrevious(std::span<std::int32_t> info);

    MachHost& host_;
    std::span<std::int32_t> previousCpuInfo_;  ///< null data before the first successful reading
    std::mutex lock_;
    std::int64_t cluster0Count_ = 6;
    std::int64_t cluster1Count_ = 12;
    std::string cluster0Name_ = "Performance";
    std::string cluster1Name_ = "Efficiency";
};

}  // namespace kestro
