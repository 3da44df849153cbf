#include "core/readout/readout_figures.h"

#include "tests/core/readout/readout_machine.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <limits>
#include <optional>
#include <vector>

namespace kestro {
namespace {

using enum MenubarModuleType;

constexpr std::array everyModule{appIcon,    memory,    cpuUsage, cpuClusters, thermal,   fanSpeed,
                                 fanProfile, powerMode, network,  battery,     diskSpace, keepAwake};

/// A machine with two fans and a charging battery, whose every figure is measured.
struct Machine : ReadoutMachine {
    MeasuredFigures measured{true, true, {true, true, true}};

    Machine() {
        fans.push_back({1, "Right", 1500, 1400, 1200, 7300});
        power.isCharging = true;
    }

    ReadoutFigures figures() const { return readoutFigures(everyModule, inputs(), measured); }
};

TEST(ReadoutFigures, AreTruncatedToWholeNumbers) {
    const ReadoutFigures figures = Machine().figures();

    EXPECT_EQ(figures.memoryPercent, 42);
    EXPECT_EQ(figures.processorPercent, 18);
    EXPECT_EQ(figures.performanceClusterPercent, 24);
    EXPECT_EQ(figures.efficiencyClusterPercent, 8);
    EXPECT_EQ(figures.temperatureCelsius, 48);
    EXPECT_EQ(figures.fanSpeedsRpm, (std::vector<std::int64_t>{1420, 1500}));
    EXPECT_EQ(figures.downloadBytesPerSecond, 1'200'000);
    EXPECT_EQ(figures.uploadBytesPerSecond, 240'000);
    EXPECT_EQ(figures.batteryPercent, 98);
    EXPECT_EQ(figures.isBatteryCharging, true);
    EXPECT_EQ(figures.diskFreeBytes, 512'000'000'000);
}

TEST(ReadoutFigures, AreThoseOfTheModules) {
    ReadoutFigures expected;
    expected.memoryPercent = 42;

    EXPECT_EQ(readoutFigures(std::array{appIcon, memory, keepAwake}, Machine().inputs(), Machine().measured),
              expected);
    EXPECT_EQ(readoutFigures({}, Machine().inputs(), Machine().measured), ReadoutFigures());
}

TEST(ReadoutFigures, AreAbsentBeforeTheFirstSample) {
    EXPECT_EQ(readoutFigures(everyModule, ReadoutInputs(), MeasuredFigures()), ReadoutFigures());
}

TEST(ReadoutFigures, HaveNoTemperatureThatNoSensorMeasured) {
    Machine machine;
    machine.measured.temperatures.averageSoC = false;

    EXPECT_EQ(machine.figures().temperatureCelsius, std::nullopt);
}

TEST(ReadoutFigures, HaveNoBatteryOnAMachineWithoutOne) {
    Machine machine;
    machine.power.hasBattery = false;

    EXPECT_EQ(machine.figures().batteryPercent, std::nullopt);
    EXPECT_EQ(machine.figures().isBatteryCharging, std::nullopt);
}

TEST(ReadoutFigures, ClampWhatNoCounterReaches) {
    Machine machine;
    machine.network.downloadBytesPerSec = 2.5e9;
    machine.network.uploadBytesPerSec = std::numeric_limits<double>::quiet_NaN();
    machine.disk.freeBytes = std::numeric_limits<std::uint64_t>::max();

    EXPECT_EQ(machine.figures().downloadBytesPerSecond, 2'500'000'000);
    EXPECT_EQ(machine.figures().uploadBytesPerSecond, 0);
    EXPECT_EQ(machine.figures().diskFreeBytes, std::numeric_limits<std::int64_t>::max());
}

}  // namespace
}  // namespace kestro
