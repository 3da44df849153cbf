#pragma once

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

#include <gtest/gtest.h>

#include <optional>

namespace kestro {

/// A simulated machine with its settings and readers. The engine is made at first use, so that a test can
/// arrange the machine before.
class EngineFixture : public testing::Test {
protected:
    TelemetryEngine& engine() {
        if (!engine_) {
            engine_.emplace(mac.platform(), settings,
                            TelemetryReaders{cpu, memory, disk, network, power, smc, thermal, processes});
        }
        return *engine_;
    }

    void destroyEngine() { engine_.reset(); }

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

private:
    std::optional<TelemetryEngine> engine_;
};

}  // namespace kestro
