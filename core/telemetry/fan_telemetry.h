#pragma once

#include <cstdint>
#include <string>

namespace kestro {

/// One fan as the controller reports it. Speeds in revolutions per minute.
struct FanTelemetry {
    std::int64_t id = 0;  ///< the fan's index from 0; its identity
    std::string name;
    double currentRPM = 0;
    double targetRPM = 0;
    double minRPM = 0;
    double maxRPM = 0;
    std::string label = {};  ///< what the machine calls the fan, such as "Left side"; empty if unnamed or not read

    /// Position between minimum and maximum as a fraction 0..1 (not a percent); 0 for an empty range.
    double percentage() const;

    friend bool operator==(const FanTelemetry&, const FanTelemetry&) = default;
};

}  // namespace kestro
