#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace kestro {

using PowerSourceValue = std::variant<bool, std::int64_t, std::string>;

/// A power source as keys and values. Keys in use: "Is Charging" (bool), "Power Source State" (text, "AC
/// Power" or "Battery Power"), "Current Capacity" and "Max Capacity" (integers in the same unit: mAh, or
/// percent of 100), "BatteryHealth" (text), "Time to Empty" (integer minutes, negative while estimating).
using PowerSourceDescription = std::map<std::string, PowerSourceValue, std::less<>>;

/// The power sources that the system publishes. Main thread; takes a few milliseconds when a battery's firmware is
/// slow.
class PowerSources {
public:
    virtual ~PowerSources() = default;

    /// One dictionary per source, in the system's order; a source without a description is nullopt.
    /// nullopt overall: the platform publishes no power sources at all.
    virtual std::optional<std::vector<std::optional<PowerSourceDescription>>> copyDescriptions() = 0;
};

}  // namespace kestro
