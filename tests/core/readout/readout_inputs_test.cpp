#include "core/readout/readout_inputs.h"

#include <gtest/gtest.h>

namespace kestro {
namespace {

TEST(ReadoutInputs, TakesWhatStandsBeforeTheFirstSampleForAbsent) {
    const auto cpu = CPUTelemetry::initial();
    const auto memory = MemoryTelemetry::initial();
    const auto thermal = ThermalTelemetry::initial();
    const auto network = NetworkTelemetry::initial();
    const auto disk = DiskTelemetry::initial();

    EXPECT_EQ(sampled(cpu), nullptr);
    EXPECT_EQ(sampled(memory), nullptr);
    EXPECT_EQ(sampled(thermal), nullptr);
    EXPECT_EQ(sampled(network), nullptr);
    EXPECT_EQ(sampled(disk), nullptr);
}

TEST(ReadoutInputs, TakesALoadForKnownOnceCoresWereMeasured) {
    auto cpu = CPUTelemetry::initial();
    cpu.coreCount = 4;
    EXPECT_EQ(sampled(cpu), nullptr);

    cpu.coreLoads.resize(4);
    EXPECT_EQ(sampled(cpu), &cpu);
}

TEST(ReadoutInputs, TakesRecordsWithAReadingForSamples) {
    MemoryTelemetry memory;
    memory.totalBytes = 1;
    auto thermal = ThermalTelemetry::initial();
    thermal.sensorCount = 1;
    auto network = NetworkTelemetry::initial();
    network.primaryInterface = "wlan0";
    auto disk = DiskTelemetry::initial();
    disk.totalBytes = 1;

    EXPECT_EQ(sampled(memory), &memory);
    EXPECT_EQ(sampled(thermal), &thermal);
    EXPECT_EQ(sampled(network), &network);
    EXPECT_EQ(sampled(disk), &disk);
}

}  // namespace
}  // namespace kestro
