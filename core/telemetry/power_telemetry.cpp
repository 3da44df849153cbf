#include "core/telemetry/power_telemetry.h"

#include <fmt/format.h>

#include <cmath>

namespace kestro {

PowerTelemetry PowerTelemetry::initial() {
    PowerTelemetry record;
    record.isPluggedIn = true;
    record.currentCapacity = 100;
    record.maxCapacity = 100;
    record.percentage = 100;
    record.condition = "Normal";
    return record;
}

std::string PowerTelemetry::statusDescription() const {
    if (!hasBattery) {
        return "AC Connected (No Battery)";
    }
    // Formatted as a double, since a bogus platform value may not fit an integer; adding 0 turns -0 into 0.
    const double wholePercentage = std::trunc(percentage) + 0.0;
    if (isCharging) {
        return fmt::format("Charging ({:.0f}%)", wholePercentage);
    }
    if (isPluggedIn) {
        return "Fully Charged / On AC";
    }
    if (timeRemainingMinutes && *timeRemainingMinutes >= 1) {
        return fmt::format("{}h {}m remaining", *timeRemainingMinutes / 60, *timeRemainingMinutes % 60);
    }
    return fmt::format("Discharging ({:.0f}%)", wholePercentage);
}

}  // namespace kestro
