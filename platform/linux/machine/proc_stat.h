#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace kestro {

/// Cumulative ticks of one logical core, wrapped to 32 bits, mapped to the Mac's four states. I/O wait counts as
/// idle; interrupts, soft interrupts and time stolen by the hypervisor count as system. User time already includes
/// guest time (Documentation/filesystems/proc.rst).
struct CoreTicks {
    std::uint32_t cpu = 0;  ///< the number in the line's name
    std::uint32_t user = 0;
    std::uint32_t system = 0;
    std::uint32_t idle = 0;
    std::uint32_t nice = 0;

    friend bool operator==(const CoreTicks&, const CoreTicks&) = default;
};

/// The maximum number of cores; core numbers must be lower.
inline constexpr std::uint32_t coreLimit = 8192;

/// Parses the "cpuN" lines at the start of /proc/stat into `cores` in file order; skips lines that are malformed
/// or out of range. False: the text ends before the first other line, so more of the file must be read. Reuses the
/// vector's memory. Any thread.
bool parseProcStatCores(std::string_view text, std::vector<CoreTicks>& cores);

/// Boot time in seconds since the Unix epoch, from the line "btime". nullopt: there is none.
std::optional<std::int64_t> parseBootTime(std::string_view procStat);

/// The first number of /proc/uptime: seconds since boot, at least 0.
std::optional<double> parseUptime(std::string_view procUptime);

}  // namespace kestro
