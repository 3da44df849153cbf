#include "core/power/power_mode_report.h"

#include "core/base/text.h"

#include <optional>

namespace kestro {

namespace {

/// The second field; nullopt when there are fewer.
std::optional<std::string_view> secondField(std::string_view line) {
    takeField(line);
    const auto second = takeField(line);
    return second.empty() ? std::nullopt : std::optional(second);
}

/// The mode that one line selects; nullopt: continue with the next line.
std::optional<SystemPowerMode> modeOfLine(std::string_view line) {
    if (line.starts_with("powermode")) {
        const auto value = secondField(line);
        if (!value) {
            return std::nullopt;
        }
        if (*value == toolValue(SystemPowerMode::lowPower)) {
            return SystemPowerMode::lowPower;
        }
        return *value == toolValue(SystemPowerMode::highPower) ? SystemPowerMode::highPower
                                                               : SystemPowerMode::balanced;
    }
    if (line.starts_with("lowpowermode") && secondField(line) == "1") {
        return SystemPowerMode::lowPower;
    }
    return std::nullopt;
}

}  // namespace

SystemPowerMode powerModeOfReport(std::string_view report) {
    if (!isValidUtf8(report)) {
        return SystemPowerMode::balanced;
    }
    while (!report.empty()) {
        const auto end = report.find_first_of("\r\n");
        if (const auto mode = modeOfLine(trimmed(report.substr(0, end)))) {
            return *mode;
        }
        report.remove_prefix(end == std::string_view::npos ? report.size() : end + 1);
    }
    return SystemPowerMode::balanced;
}

}  // namespace kestro
