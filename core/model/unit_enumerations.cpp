#include "core/model/unit_enumerations.h"

#include <fmt/format.h>

namespace kestro {

std::string format(TemperatureUnit unit, double celsius) {
    if (unit == TemperatureUnit::fahrenheit) {
        return fmt::format("{:.1f}°F", celsius * 9 / 5 + 32);
    }
    return fmt::format("{:.1f}°C", celsius);
}

std::string format(FanSpeedUnit unit, std::int64_t rpm, const DigitGrouping& grouping) {
    if (unit == FanSpeedUnit::rawRPM) {
        return groupedDigits(rpm, grouping) + " RPM";
    }
    return rpm >= 1000 ? fmt::format("{:.1f}k", static_cast<double>(rpm) / 1000) : fmt::format("{}", rpm);
}

}  // namespace kestro
