#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace kestro {

/// The fields of /proc/PID/stat that a process listing needs (proc(5)).
struct ProcessStat {
    std::int32_t pid = 0;
    std::string_view name;             ///< the kernel's name, at most 64 bytes; points into the parsed text
    std::uint64_t processorTicks = 0;  ///< utime + stime, in ticks of sysconf(_SC_CLK_TCK)
    std::uint64_t startTicks = 0;      ///< starttime, in ticks since boot
    std::uint64_t residentPages = 0;   ///< rss; 0 when the kernel reports a negative count
};

/// nullopt: the text is not one complete, well-formed line. The name may contain spaces, parentheses and any other
/// byte: it ends at the last ")".
std::optional<ProcessStat> parseProcessStat(std::string_view text);

}  // namespace kestro
