#pragma once

#include "core/platform/mach_host.h"

#include <cstdint>
#include <optional>
#include <string_view>

namespace kestro {

/// The figures of /proc/meminfo that are in use, in bytes. 0 for a missing or malformed line.
struct MemoryInfo {
    std::uint64_t total = 0;
    std::uint64_t free = 0;
    std::uint64_t available = 0;  ///< estimated on kernels before 3.14, which do not report it
    std::uint64_t swapTotal = 0;
    std::uint64_t swapFree = 0;
    std::uint64_t zswapPool = 0;

    /// Unreclaimable kernel memory and unevictable pages.
    std::uint64_t unreclaimable = 0;

    friend bool operator==(const MemoryInfo&, const MemoryInfo&) = default;
};

/// nullopt: the text has no total above 0. `free` and `available` never exceed the total.
std::optional<MemoryInfo> parseMemoryInfo(std::string_view text);

/// Memory that /proc/meminfo does not account for, in bytes.
struct MemoryPools {
    std::uint64_t zramPool = 0;              ///< memory held by compressed RAM disks
    std::uint64_t reclaimableFileCache = 0;  ///< the ZFS cache above its minimum

    friend bool operator==(const MemoryPools&, const MemoryPools&) = default;
};

/// The page counts whose active, wired and compressed pages add up to the memory in use, which is the total minus
/// what is available. The compressor's share comes first, then the wired one; the rest is active.
VirtualMemoryStatistics virtualMemoryStatistics(const MemoryInfo& info, const MemoryPools& pools,
                                                std::size_t pageSize);

/// Bytes of memory held by a compressed RAM disk, from its "mm_stat" (Documentation/admin-guide/blockdev/zram.rst:
/// the third number). nullopt: malformed.
std::optional<std::uint64_t> parseZramPool(std::string_view mmStat);

/// Reclaimable bytes of the ZFS cache: its size minus its minimum, from "arcstats". nullopt: malformed.
std::optional<std::uint64_t> parseReclaimableArc(std::string_view arcStats);

}  // namespace kestro
