#include "platform/linux/machine/proc_stat.h"

#include "core/base/text.h"

#include <algorithm>
#include <array>

namespace kestro {
namespace {

enum Column { user, nice, system, idle, ioWait, irq, softIrq, steal, columnCount };

// Kernels that predate the later columns have shorter lines.
constexpr std::size_t leastColumns = idle + 1;

std::optional<CoreTicks> parseCoreLine(std::string_view line) {
    line.remove_prefix(3);
    CoreTicks ticks;
    if (!takeNumber(line, ticks.cpu) || ticks.cpu >= coreLimit) {
        return std::nullopt;
    }
    std::array<std::uint64_t, columnCount> columns{};
    std::size_t count = 0;
    while (count < columns.size() && line.starts_with(' ')) {
        line.remove_prefix(std::min(line.find_first_not_of(' '), line.size()));
        if (!takeNumber(line, columns[count])) {
            break;
        }
        ++count;
    }
    const bool isCutShort = !line.empty() && line.front() != ' ';
    if (count < leastColumns || isCutShort) {
        return std::nullopt;
    }
    ticks.user = static_cast<std::uint32_t>(columns[user]);
    ticks.nice = static_cast<std::uint32_t>(columns[nice]);
    ticks.idle = static_cast<std::uint32_t>(columns[idle] + columns[ioWait]);
    ticks.system = static_cast<std::uint32_t>(columns[system] + columns[irq] + columns[softIrq] + columns[steal]);
    return ticks;
}

}  // namespace

bool parseProcStatCores(std::string_view text, std::vector<CoreTicks>& cores) {
    cores.clear();
    while (!text.empty()) {
        // The kernel ends every line with a line break; a line without one was cut off.
        if (text.find('\n') == std::string_view::npos) {
            return false;
        }
        const auto line = takeLine(text);
        if (!line.starts_with("cpu")) {
            return true;
        }
        if (cores.size() == coreLimit) {
            return true;
        }
        if (const auto ticks = parseCoreLine(line)) {
            cores.push_back(*ticks);
        }
    }
    return false;
}

std::optional<std::int64_t> parseBootTime(std::string_view procStat) {
    while (!procStat.empty()) {
        auto line = takeLine(procStat);
        if (takeField(line) == "btime") {
            const auto seconds = parseTrimmed<std::int64_t>(line);
            return seconds && *seconds > 0 ? seconds : std::nullopt;
        }
    }
    return std::nullopt;
}

std::optional<double> parseUptime(std::string_view procUptime) {
    auto line = takeLine(procUptime);
    const auto seconds = parseTrimmed<double>(takeField(line));
    return seconds && *seconds >= 0 && *seconds < 1e10 ? seconds : std::nullopt;
}

}  // namespace kestro
