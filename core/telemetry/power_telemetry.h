#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace kestro {

/// One sample of the battery and the power source.
struct PowerTelemetry {
    bool hasBattery = false;
    bool isCharging = false;
    bool isPluggedIn = false;  ///< on external power
    std::int64_t currentCapacity = 0;
    std::int64_t maxCapacity = 0;  ///< in the unit of `currentCapacity`
    double percentage = 0;
    std::string condition;                             ///< the battery's health
    std::optional<std::int64_t> timeRemainingMinutes;  ///< absent: unknown to the platform

    /// Shown before the first sample and on a machine without a battery.
    static PowerTelemetry initial();

    /// One line for the user: "Charging (57%)", "Fully Charged / On AC", "3h 7m remaining",
    /// "Discharging (57%)" or "AC Connected (No Battery)". Percentages are truncated.
    std::string statusDescription() const;

    friend bool operator==(const PowerTelemetry&, const PowerTelemetry&) = default;
};

}  // namespace kestro
