#include "core/readout/readout_figures.h"

#include "core/base/text.h"

#include <algorithm>
#include <limits>

namespace kestro {

namespace {

void addProcessor(ReadoutFigures& figures, MenubarModuleType module, const CPUTelemetry* cpu) {
    if (cpu == nullptr) {
        return;
    }
    if (module == MenubarModuleType::cpuUsage) {
        figures.processorPercent = wholeNumber(cpu->totalUsage);
    } else {
        figures.performanceClusterPercent = wholeNumber(cpu->cluster0Usage);
        figures.efficiencyClusterPercent = wholeNumber(cpu->cluster1Usage);
    }
}

void addFans(ReadoutFigures& figures, std::span<const FanTelemetry> fans) {
    if (fans.empty()) {
        return;
    }
    auto& speeds = figures.fanSpeedsRpm.emplace();
    for (const FanTelemetry& fan : fans) {
        speeds.push_back(wholeNumber(fan.currentRPM));
    }
}

/// A rate can exceed what `wholeNumber` shows. NaN counts as 0.
std::int64_t wholeRate(double bytesPerSecond) {
    constexpr double most = 1e15;
    return bytesPerSecond > 0 ? static_cast<std::int64_t>(std::min(bytesPerSecond, most)) : 0;
}

void addNetwork(ReadoutFigures& figures, const NetworkTelemetry* network) {
    if (network != nullptr) {
        figures.downloadBytesPerSecond = wholeRate(network->downloadBytesPerSec);
        figures.uploadBytesPerSecond = wholeRate(network->uploadBytesPerSec);
    }
}

void addBattery(ReadoutFigures& figures, const PowerTelemetry* power) {
    if (power != nullptr && power->hasBattery) {
        figures.batteryPercent = wholeNumber(power->percentage);
        figures.isBatteryCharging = power->isCharging;
    }
}

void addDisk(ReadoutFigures& figures, const DiskTelemetry* disk) {
    if (disk != nullptr) {
        constexpr auto most = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
        figures.diskFreeBytes = static_cast<std::int64_t>(std::min(disk->freeBytes, most));
    }
}

void addModule(ReadoutFigures& figures, MenubarModuleType module, const ReadoutInputs& inputs,
               const MeasuredFigures& measured) {
    switch (module) {
        case MenubarModuleType::memory:
            if (inputs.memory != nullptr) {
                figures.memoryPercent = wholeNumber(inputs.memory->usedPercentage());
            }
            return;
        case MenubarModuleType::cpuUsage:
        case MenubarModuleType::cpuClusters:
            return addProcessor(figures, module, inputs.cpu);
        case MenubarModuleType::thermal:
            if (inputs.thermal != nullptr && measured.temperatures.averageSoC) {
                figures.temperatureCelsius = wholeNumber(inputs.thermal->averageSoCTemp);
            }
            return;
        case MenubarModuleType::fanSpeed:
            return addFans(figures, inputs.fans);
        case MenubarModuleType::network:
            return addNetwork(figures, inputs.network);
        case MenubarModuleType::battery:
            return addBattery(figures, inputs.power);
        case MenubarModuleType::diskSpace:
            return addDisk(figures, inputs.disk);
        case MenubarModuleType::appIcon:
        case MenubarModuleType::fanProfile:
        case MenubarModuleType::powerMode:
        case MenubarModuleType::keepAwake:
            return;
    }
}

}  // namespace

ReadoutFigures readoutFigures(std::span<const MenubarModuleType> modules, const ReadoutInputs& inputs,
                              const MeasuredFigures& measured) {
    ReadoutFigures figures;
    for (const MenubarModuleType module : modules) {
        addModule(figures, module, inputs, measured);
    }
    return figures;
}

}  // namespace kestro
