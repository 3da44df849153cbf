#pragma once

#include "core/engine/telemetry_engine.h"
#include "core/telemetry/cpu_reader.h"
#include "core/telemetry/disk_reader.h"
#include "core/telemetry/memory_reader.h"
#include "core/telemetry/network_reader.h"
#include "core/telemetry/power_reader.h"
#include "core/telemetry/process_reader.h"
#include "core/telemetry/smc_reader.h"
#include "core/telemetry/thermal_reader.h"
#include "platform/simulated/simulated_mac.h"

namespace kestro {

/// Every reader of one simulated machine, which must outlive them.
struct SimulatedReaders {
    explicit SimulatedReaders(SimulatedMac& mac);
    ~SimulatedReaders();

    TelemetryReaders all() { return {cpu, memory, disk, network, power, smc, thermal, processes}; }

    CPUReader cpu;
    MemoryReader memory;
    DiskReader disk;
    NetworkReader network;
    PowerReader power;
    SMCReader smc;
    ThermalReader thermal;
    ProcessReader processes;
};

}  // namespace kestro
