#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace kestro {

/// Cumulative ticks of one logical core, wrapped to 32 bits, by the Mac's four states. Waiting for I/O counts
/// as idle; interrupts, soft interrupts and time stolen by the hypervisor as system. Guest time is part of
/// user time already (Documentation/filesystems/proc.rst).
struct CoreTicks {
    std::uint32_t cpu = 0;  ///< the number in the line's name
    std::uint32_t user = 0;
    std::uint32_t system = 0;
    std::uint32_t idle = 0;
    std::uint32_t nice = 0;

    friend bool operator==(const CoreTicks&, const CoreTicks&) = default;
};

/// The largest number of cores, and one more than the largest number of a core, that are taken.
inline constexpr std::uint32_t coreLimit = 8192;

/// Reads the "cpuN" lines that begin /proc/stat into `cores` in the file's order; a line that is malformed or
/// out of range is left out. False: the text stops before a line that is none of them, so more of the file is
/// needed to have them all. Reuses the vector's memory. Any thread.
bool parseProcStatCores(std::string_view text, std::vector<CoreTicks>& cores);

/// Seconds since the Unix epoch when the system was started, from the line "btime". nullopt: there is none.
std::optional<std::int64_t> parseBootTime(std::string_view procStat);

/// The first number of /proc/uptime: seconds since the start, at least 0.
std::optional<double> parseUptime(std::string_view procUptime);

}  // namespace kestro
