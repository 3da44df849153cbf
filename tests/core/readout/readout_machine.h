#pragma once

#include "core/readout/readout_inputs.h"

#include <vector>

namespace kestro {

/// The records of a machine in use: 42 % of memory, 18 % load, one fan at 1420 rpm, 98 % of its battery.
struct ReadoutMachine {
    CPUTelemetry cpu = CPUTelemetry::initial();
    MemoryTelemetry memory;
    std::vector<FanTelemetry> fans{{0, "Fan", 1420.9, 1400, 1200, 7300}};
    ThermalTelemetry thermal{48.9, 52, 31, 4, "Nominal"};
    NetworkTelemetry network{240'000.5, 1'200'000, "wlan0", "192.168.1.5"};
    PowerTelemetry power = PowerTelemetry::initial();
    DiskTelemetry disk = DiskTelemetry::initial();

    ReadoutMachine() {
        cpu.totalUsage = 18.7;
        cpu.cluster0Usage = 24.9;
        cpu.cluster1Usage = 8.2;
        memory.totalBytes = 1000;
        memory.usedBytes = 429;
        power.hasBattery = true;
        power.percentage = 98.9;
        disk.freeBytes = 512'000'000'000;
    }

    ReadoutInputs inputs() const {
        ReadoutInputs all;
        all.cpu = &cpu;
        all.memory = &memory;
        all.fans = fans;
        all.thermal = &thermal;
        all.network = &network;
        all.power = &power;
        all.disk = &disk;
        return all;
    }
};

}  // namespace kestro
