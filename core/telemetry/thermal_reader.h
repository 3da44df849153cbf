#pragma once

#include "core/telemetry/thermal_telemetry.h"

#include <cstdint>
#include <optional>

namespace kestro {

class HIDEventSystem;
class ProcessInfoService;

/// Reads the temperature sensors that the event system publishes, and the system's own thermal state. Main thread;
/// keeps its client for its whole lifetime.
class ThermalReader {
public:
    ThermalReader(HIDEventSystem& eventSystem, ProcessInfoService& processInfo);
    ThermalReader(const ThermalReader&) = delete;
    ThermalReader& operator=(const ThermalReader&) = delete;

    /// The process-wide reader on the current platform, created on first use.
    static ThermalReader& shared();

    /// Means of the die and battery sensors, and the peak of all sensors, whatever they measure. Only readings
    /// strictly between 10 and 125 degrees count. Without a client or a list of sensors, returns the initial
    /// record.
    ThermalTelemetry readThermals();

    /// Which temperatures of the last record a sensor measured; none before the first call.
    const MeasuredTemperatures& measured() const { return measured_; }

private:
    HIDEventSystem& eventSystem_;
    ProcessInfoService& processInfo_;
    std::optional<std::uint32_t> client_;
    MeasuredTemperatures measured_;
};

}  // namespace kestro
