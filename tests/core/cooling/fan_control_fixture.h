#pragma once

#include "core/cooling/fan_control_manager.h"
#include "core/engine/telemetry_engine.h"
#include "core/settings/user_settings.h"
#include "core/telemetry/cpu_reader.h"
#include "core/telemetry/disk_reader.h"
#include "core/telemetry/memory_reader.h"
#include "core/telemetry/network_reader.h"
#include "core/telemetry/power_reader.h"
#include "core/telemetry/process_reader.h"
#include "core/telemetry/smc_reader.h"
#include "core/telemetry/thermal_reader.h"
#include "platform/simulated/simulated_mac.h"

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
    CPUReader cpu{mac.machHost, mac.systemControl};
    MemoryReader memory{mac.machHost, mac.systemControl, mac.processInfo};
    DiskReader disk{mac.fileSystem};
    NetworkReader network{mac.networkInterfaces, mac.clock};
    PowerReader power{mac.powerSources};
    SMCReader smc{mac.smc};
    ThermalReader thermal{mac.hidEventSystem, mac.processInfo};
    ProcessReader processes{mac.commandRunner};
    TelemetryEngine engine{mac.platform(), settings, {cpu, memory, disk, network, power, smc, thermal, processes}};
    std::unique_ptr<FanControlManager> made;

    explicit FanControlFixture(const std::vector<float>& fanSpeeds = {1420, 1460}) {
        mac.freeze();
        mac.smc.setFans(fanSpeeds);
    }

    FanControlManager& manager() {
        if (!made) {
            made = std::make_unique<FanControlManager>(mac.platform(), settings, engine, smc);
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
