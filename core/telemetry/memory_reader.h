#pragma once

#include "core/telemetry/memory_telemetry.h"

#include <cstddef>
#include <cstdint>

namespace kestro {

class MachHost;
class ProcessInfoService;
class SystemControl;

/// Reads page counts, swap usage and memory pressure. Holds two constants and no state; as thread-safe as its
/// ports.
class MemoryReader {
public:
    MemoryReader(MachHost& host, SystemControl& system, ProcessInfoService& processInfo);
    MemoryReader(const MemoryReader&) = delete;
    MemoryReader& operator=(const MemoryReader&) = delete;

    /// The process-wide reader on the current platform, created on first use.
    static MemoryReader& shared();

    /// Without page statistics all memory reads as free. Missing swap usage reads as 0, missing pressure as
    /// "Normal". Nothing is clamped. Allocates no memory.
    MemoryTelemetry read();

private:
    MachHost& host_;
    SystemControl& system_;
    const std::uint64_t totalMemory_;  ///< bytes of physical memory
    const std::size_t pageSize_;       ///< bytes
};

}  // namespace kestro
