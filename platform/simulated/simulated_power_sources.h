#pragma once

#include "core/platform/power_sources.h"
#include "platform/simulated/simulated_failure.h"

namespace kestro {

/// One battery at 87 %, discharging, with 4 hours and 12 minutes left.
class SimulatedPowerSources final : public PowerSources {
public:
    SimulatedPowerSources() { setBattery(87, false); }

    std::optional<std::vector<std::optional<PowerSourceDescription>>> copyDescriptions() override {
        if (failure.strikes()) {
            return std::nullopt;
        }
        return descriptions;
    }

    /// One battery; a charging one is on external power.
    void setBattery(std::int64_t percent, bool isCharging) {
        descriptions = {PowerSourceDescription{
            {"Is Charging", isCharging},
            {"Power Source State", std::string(isCharging ? "AC Power" : "Battery Power")},
            {"Current Capacity", percent},
            {"Max Capacity", std::int64_t{100}},
            {"BatteryHealth", std::string("Normal")},
            {"Time to Empty", std::int64_t{isCharging ? -1 : 252}},
        }};
    }

    /// Simulates a desktop machine.
    void removeBattery() { descriptions.clear(); }

    SimulatedFailure failure;
    std::vector<std::optional<PowerSourceDescription>> descriptions;
};

}  // namespace kestro
