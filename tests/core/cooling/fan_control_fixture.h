#pragma once

#include "core/cooling/fan_control_manager.h"
#include "core/settings/user_settings.h"
#include "tests/support/simulated_readers.h"

#include <chrono>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

namespace kestro {

inline const std::vector<float> fanless;

/// A frozen machine with fans from 1200 to 7300 rpm, and a manager created on first use.
struct FanControlFixture {
    SimulatedMac mac;
    UserSettings settings{mac.userDefaults};
    SimulatedReaders readers{mac};
    TelemetryEngine engine{mac.platform(), settings, readers.all()};
    std::unique_ptr<FanControlManager> made;

    explicit FanControlFixture(const std::vector<float>& fanSpeeds = {1420, 1460}) {
        mac.freeze();
        mac.smc.setFans(fanSpeeds);
    }

    FanControlManager& manager() {
        if (!made) {
            made = std::make_unique<FanControlManager>(mac.platform(), settings, engine, readers.smc);
        }
        return *made;
    }

    /// Replaces all sensors with one in the die and one in the battery.
    void setTemperatures(double die, double battery) {
        mac.hidEventSystem.sensors = {{"PMU tdie1", die}, {"gas gauge battery", battery}};
        engine.sampleFull();
    }

    /// Gives the second fan a separate range.
    void setRightRange(float minRPM, float maxRPM) {
        mac.smc.setFloat("F1Mn", minRPM);
        mac.smc.setFloat("F1Mx", maxRPM);
    }

    /// Advances to the next firing of the one-second timer.
    void tick() { mac.advance(std::chrono::seconds(1)); }

    std::int64_t writes(std::string_view key) const { return mac.userDefaults.writes(key); }
};

inline FanCurveConfig linear(double lowTemp, double highTemp, double minRPM, double maxRPM) {
    FanCurveConfig config;
    config.curveShape = CurveShape::linear;
    config.lowTemp = lowTemp;
    config.highTemp = highTemp;
    config.minRPM = minRPM;
    config.maxRPM = maxRPM;
    return config;
}

}  // namespace kestro
