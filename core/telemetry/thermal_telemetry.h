#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace kestro {

/// One sample of the temperature sensors, in degrees Celsius.
struct ThermalTelemetry {
    double averageSoCTemp = 0;
    double peakDieTemp = 0;  ///< the hottest reading of any sensor, whatever it measures
    double batteryTemp = 0;
    std::int64_t sensorCount = 0;  ///< number of sensors that the system exposes
    std::string thermalState;      ///< as reported by the system: "Nominal", "Fair", "Serious" or "Critical"

    /// Shown before the first sample: plausible readings, so that no gauge starts at zero.
    static ThermalTelemetry initial() { return {45.0, 48.0, 32.0, 0, "Nominal"}; }

    /// From the peak alone: "Critical" from 95, "Elevated" from 80, "Nominal" from 60, else "Cool".
    std::string_view statusSummary() const;

    friend bool operator==(const ThermalTelemetry&, const ThermalTelemetry&) = default;
};

/// Which temperatures of a sample a sensor measured; the others are fallbacks.
struct MeasuredTemperatures {
    bool averageSoC = false;
    bool peakDie = false;
    bool battery = false;

    friend bool operator==(const MeasuredTemperatures&, const MeasuredTemperatures&) = default;
};

}  // namespace kestro
