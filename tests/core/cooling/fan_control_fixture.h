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

/// A still machine whose fans run from 1200 to 7300, with a manager made at first use.
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

    /// The only sensors from now on: one in the die, one in the battery.
    void setTemperatures(double die, double battery) {
        mac.hidEventSystem.sensors = {{"PMU tdie1", die}, {"gas gauge battery", battery}};
        engine.sampleFull();
    }

    /// The second fan with a range of its own.
    void setRightRange(float minRPM, float maxRPM) {
        mac.smc.setFloat("F1Mn", minRPM);
        mac.smc.setFloat("F1Mx", maxRPM);
    }

    /// The next firing of the one-second timer.
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
