#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace kestro {

/// One entry of the counter array.
struct ProcessorIdentity {
    std::uint32_t number = 0;  ///< the kernel's number of the core
    bool isOnline = true;
};

/// The result of `host_processor_info` for the flavour PROCESSOR_CPU_LOAD_INFO.
struct ProcessorLoadInfo {
    std::uint32_t processorCount = 0;

    /// Four cumulative tick counts per logical core, in the order user, system, idle, nice. They wrap at 32 bits.
    /// Owned by the caller, who releases it with `vmDeallocate`. Null data: no array.
    std::span<std::int32_t> info;

    /// Which core each entry belongs to; valid until the next call. Empty: the kernel numbers its cores as listed,
    /// and all are online.
    std::span<const ProcessorIdentity> processors = {};

    /// Starts at 0 and changes whenever the cores are arranged anew, because the kernel listed further ones:
    /// counts per performance level may have changed, and entries belong to other cores than before.
    std::uint32_t arrangement = 0;
};

/// The page counts of `host_statistics64` for the flavour HOST_VM_INFO64 that are in use.
struct VirtualMemoryStatistics {
    std::uint32_t freeCount = 0;
    std::uint32_t activeCount = 0;
    std::uint32_t inactiveCount = 0;
    std::uint32_t wireCount = 0;
    std::uint32_t compressorPageCount = 0;
};

/// The kernel's host port: processor ticks and virtual-memory statistics. Main thread; no call allocates memory in
/// steady state.
class MachHost {
public:
    virtual ~MachHost() = default;

    /// nullopt: the call failed or returned implausible counters.
    virtual std::optional<ProcessorLoadInfo> hostProcessorInfo() = 0;

    /// Releases an array from `hostProcessorInfo`; `byteCount` is its length in integers times 4.
    virtual void vmDeallocate(std::int32_t* address, std::size_t byteCount) = 0;

    /// nullopt: the statistics cannot be read.
    virtual std::optional<VirtualMemoryStatistics> hostStatistics64() = 0;

    /// Bytes in one page of `hostStatistics64`; nullopt: unknown.
    virtual std::optional<std::size_t> hostPageSize() = 0;
};

}  // namespace kestro
