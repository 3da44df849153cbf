#pragma once

#include "core/telemetry/thermal_telemetry.h"

namespace kestro {

/// Which figures of the latest records were measured; the others hold their documented fallbacks. The battery's
/// figures are measured if its record has a battery.
struct MeasuredFigures {
    bool load = false;   ///< the processor's usages, between two recent readings
    bool rates = false;  ///< the network's rates, likewise
    MeasuredTemperatures temperatures;

    friend bool operator==(const MeasuredFigures&, const MeasuredFigures&) = default;
};

}  // namespace kestro
