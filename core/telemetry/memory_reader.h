#pragma once

#include <cstddef>
#include <cstdint>

#include "core/telemetry/memory_telemetry.h"

namespace kestro {

class MachHost;
class ProcessInfoService;
class SystemControl;

/// Reads page counts, swap usage and memory pressure. Holds two constants and no state; as many threads as
/// the ports allow.
class MemoryReader {
public:
    MemoryReader(MachHost& host, SystemControl& system, ProcessInfoService& processInfo);
    MemoryReader(const MemoryReader&) = delete;
    MemoryReader& operator=(const MemoryReader&) = delete;

    /// The process-wide reader on the current platform, made at first use.
    static MemoryReader& shared();

    /// Without page statistics the whole machine reads as free; without swap usage or pressure only those
    /// read as 0 and "Normal". Nothing is clamped. Allocates no memory.
    MemoryTelemetry read();

private:
    MachHost& host_;
    SystemControl& system_;
    const std::uint64_t totalMemory_;  ///< bytes of physical memory
    const std::size_t pageSize_;       ///< bytes
};

}  // namespace kestro
