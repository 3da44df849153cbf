#pragma once

#include "core/model/menubar_enumerations.h"
#include "core/readout/readout_inputs.h"
#include "core/telemetry/measured_figures.h"

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace kestro {

/// The figures behind the readout's text, truncated to whole numbers as the text shows them. Absent: no module of
/// the readout shows the figure, or nothing has measured it.
struct ReadoutFigures {
    std::optional<std::int64_t> memoryPercent;
    std::optional<std::int64_t> processorPercent;
    std::optional<std::int64_t> performanceClusterPercent;
    std::optional<std::int64_t> efficiencyClusterPercent;
    std::optional<std::int64_t> temperatureCelsius;
    std::optional<std::vector<std::int64_t>> fanSpeedsRpm;  ///< in the order of the fans
    std::optional<std::int64_t> downloadBytesPerSecond;
    std::optional<std::int64_t> uploadBytesPerSecond;
    std::optional<std::int64_t> batteryPercent;  ///< absent on a machine without a battery
    std::optional<bool> isBatteryCharging;
    std::optional<std::int64_t> diskFreeBytes;

    friend bool operator==(const ReadoutFigures&, const ReadoutFigures&) = default;
};

/// The figures of these modules. Pure; any thread.
ReadoutFigures readoutFigures(std::span<const MenubarModuleType> modules, const ReadoutInputs& inputs,
                              const MeasuredFigures& measured);

}  // namespace kestro
