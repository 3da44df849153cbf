#pragma once

#include "platform/linux/sensors/hwmon_chip.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kestro {

/// Whether the thermal reader treats a sensor of this name as a die sensor: the name contains "tdie", "soc" or
/// "cpu" in any case, and not "battery".
bool isDieName(std::string_view product);

/// The name of a chip's input `number`. Names of processor chips begin with "CPU" ("CPU Package", "CPU Core 3",
/// "CPU Tccd1"), Apple's controller provides full names ("SoC P-cluster 0"), and all others combine chip and label
/// ("nvme Composite", "acpitz temp1").
std::string sensorName(const HwmonChip& chip, std::uint32_t number, const std::optional<std::string>& label);

/// The name of a thermal zone; "CPU Package" for "x86_pkg_temp", otherwise its type.
std::string zoneName(std::string_view type);

/// The same name reworded so that it no longer counts as a die sensor, for sensors elsewhere on the machine whose
/// name mentions the processor, such as a laptop controller's "thinkpad CPU".
std::string nameOutsideDie(std::string_view product);

/// Whether a mainboard chip's input commonly floats and may read anything.
bool isFloatingInput(std::string_view label);

/// Whether an input's label or a thermal zone's type names a graphics processor.
bool isGraphicsName(std::string_view name);

}  // namespace kestro
