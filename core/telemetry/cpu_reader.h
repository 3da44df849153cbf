#pragma once

#include <cstdint>
#include <mutex>
#include <span>
#include <string>

#include "core/telemetry/cpu_telemetry.h"

namespace kestro {

class MachHost;
class SystemControl;

/// Turns the kernel's cumulative ticks into the load between two readings. Keeps the counter array of the
/// previous reading, which belongs to it until the next one replaces it. Any thread, one call at a time.
class CPUReader {
public:
    /// Asks the hardware for the sizes and names of its two clusters; what it does not answer keeps its default.
    CPUReader(MachHost& host, SystemControl& system);
    CPUReader(const CPUReader&) = delete;
    CPUReader& operator=(const CPUReader&) = delete;

    /// The process-wide reader on the current platform, made at first use.
    static CPUReader& shared();

    /// The load since the previous call. The first call, and one that the kernel does not answer, read as
    /// idle without cores; the next one then measures across the gap.
    CPUTelemetry readCPU();

    /// The same into an existing record, whose storage is used again.
    void readCPU(CPUTelemetry& record);

private:
    struct Sums;

    void beginIdle(CPUTelemetry& record) const;
    Sums measureCores(std::span<const std::int32_t> info, std::size_t cores, CPUTelemetry& record) const;
    void replacePrevious(std::span<std::int32_t> info);

    MachHost& host_;
    std::span<std::int32_t> previousCpuInfo_;  ///< null data before the first successful reading
    std::mutex lock_;
    std::int64_t superCoreCount_ = 6;
    std::int64_t performanceCoreCount_ = 12;
    std::string cluster0Name_ = "Performance";
    std::string cluster1Name_ = "Efficiency";
};

}  // namespace kestro
