#pragma once

#include "platform/linux/proc_meminfo.h"

#include <cstdint>
#include <optional>
#include <string_view>

namespace kestro {

/// Shares of the last ten seconds in percent during which some, or all, tasks waited for memory
/// (Documentation/accounting/psi.rst).
struct PressureStall {
    double some = 0;
    double full = 0;
};

/// From /proc/pressure/memory. nullopt: the line "some" is missing or malformed. Without a line "full", as on
/// kernels older than 5.13 for some resources, that share is 0.
std::optional<PressureStall> parsePressureStall(std::string_view text);

/// The Mac's levels: 1 normal, 2 warning, 4 critical.
inline constexpr std::int32_t pressureNormal = 1;
inline constexpr std::int32_t pressureWarning = 2;
inline constexpr std::int32_t pressureCritical = 4;

/// Critical from 5 % of full or 20 % of some waiting on, warning from 1 % of full or 5 % of some.
std::int32_t pressureLevel(const PressureStall& stall);

/// Where the kernel does not measure stalls: critical below 4 % of memory available, warning below 10 %. A file
/// system's own cache of `reclaimable` bytes, which the kernel does not know how to count, is available too.
std::int32_t pressureLevel(const MemoryInfo& info, std::uint64_t reclaimable);

}  // namespace kestro
