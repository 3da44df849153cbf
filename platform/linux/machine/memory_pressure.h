#pragma once

#include "platform/linux/machine/proc_meminfo.h"

#include <cstdint>
#include <optional>
#include <string_view>

namespace kestro {

/// Percentages of the last ten seconds during which some, or all, tasks waited for memory
/// (Documentation/accounting/psi.rst).
struct PressureStall {
    double some = 0;
    double full = 0;
};

/// Parses /proc/pressure/memory. nullopt: the line "some" is missing or malformed. Without a line "full", as on
/// kernels before 5.13 for some resources, that share is 0.
std::optional<PressureStall> parsePressureStall(std::string_view text);

/// The Mac's levels: 1 normal, 2 warning, 4 critical.
inline constexpr std::int32_t pressureNormal = 1;
inline constexpr std::int32_t pressureWarning = 2;
inline constexpr std::int32_t pressureCritical = 4;

/// Critical from 5 % full or 20 % some, warning from 1 % full or 5 % some.
std::int32_t pressureLevel(const PressureStall& stall);

/// For kernels that do not measure stalls: critical below 4 % of memory available, warning below 10 %. Adds
/// `reclaimable` bytes of a file system's own cache, which the kernel does not count as available.
std::int32_t pressureLevel(const MemoryInfo& info, std::uint64_t reclaimable);

}  // namespace kestro
