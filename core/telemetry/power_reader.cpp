#include "core/telemetry/power_reader.h"

#include "core/platform/platform.h"
#include "core/platform/power_sources.h"

#include <algorithm>

namespace kestro {

namespace {

template <typename T>
std::optional<T> valueOf(const PowerSourceDescription& description, std::string_view key) {
    const auto found = description.find(key);
    const T* const value = found == description.end() ? nullptr : std::get_if<T>(&found->second);
    return value ? std::optional(*value) : std::nullopt;
}

PowerTelemetry batteryRecord(const PowerSourceDescription& description) {
    PowerTelemetry record;
    record.hasBattery = true;
    record.isCharging = valueOf<bool>(description, "Is Charging").value_or(false);
    record.isPluggedIn = valueOf<std::string>(description, "Power Source State") == "AC Power";
    record.currentCapacity = valueOf<std::int64_t>(description, "Current Capacity").value_or(100);
    record.maxCapacity = valueOf<std::int64_t>(description, "Max Capacity").value_or(100);
    // Multiply first, so that 57 of 100 is exactly 57 and does not truncate to 56.
    record.percentage = record.maxCapacity < 1 ? 100.0
                                               : 100.0 * static_cast<double>(record.currentCapacity) /
                                                     static_cast<double>(record.maxCapacity);
    record.condition = valueOf<std::string>(description, "BatteryHealth").value_or("Normal");
    const auto minutes = valueOf<std::int64_t>(description, "Time to Empty");
    if (minutes && *minutes >= 1) {
        record.timeRemainingMinutes = minutes;
    }
    return record;
}

}  // namespace

PowerReader& PowerReader::shared() {
    static auto* const reader = new PowerReader(Platform::current().powerSources);
    return *reader;
}

PowerTelemetry PowerReader::read() {
    const auto descriptions = sources_.copyDescriptions();
    if (!descriptions) {
        return PowerTelemetry::initial();
    }
    const auto described =
        std::ranges::find_if(*descriptions, [](const auto& source) { return source.has_value(); });
    return described == descriptions->end() ? PowerTelemetry::initial() : batteryRecord(**described);
}

}  // namespace kestro
