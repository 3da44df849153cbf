#pragma once

#include "platform/linux/hwmon_chip.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kestro {

/// Whether the reader of temperatures takes a sensor of this name for one of the processor die: the name holds
/// "tdie", "soc" or "cpu" in any case, and not "battery".
bool isDieName(std::string_view product);

/// The name of input `number` of a chip: that of the processor's own chips begins with "CPU" ("CPU Package",
/// "CPU Core 3", "CPU Tccd1"), Apple's controller states full names ("SoC P-cluster 0"), and all others are told
/// by chip and label ("nvme Composite", "acpitz temp1").
std::string sensorName(const HwmonChip& chip, std::uint32_t number, const std::optional<std::string>& label);

/// The name of a thermal zone; "CPU Package" for "x86_pkg_temp", else its type.
std::string zoneName(std::string_view type);

/// The same name in words that no longer make it one of the die, for sensors elsewhere on the machine that
/// have the processor's name in theirs, such as a laptop controller's "thinkpad CPU".
std::string nameOutsideDie(std::string_view product);

/// Whether an input of a mainboard chip is one that commonly floats, with any reading at all.
bool isFloatingInput(std::string_view label);

}  // namespace kestro
