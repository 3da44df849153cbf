#pragma once

#include "platform/linux/sensors/hwmon_chip.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kestro {

/// How well a sensor measures the processor die, best first. The die's sensors are those of the best rank that
/// the machine has.
enum class DieRank : std::uint8_t {
    processorChip,   ///< a chip inside the processor
    processorZone,   ///< a thermal zone named after the processor or the system on a chip
    coreZone,        ///< a thermal zone named after a part of the processor: a cluster, its big or little cores
    processorLabel,  ///< another chip's input that is labelled as the processor
    unnamedZone,     ///< a thermal zone of the system on a chip whose name does not say which part
    firmwareZone,    ///< the ACPI zone
    controller,      ///< an input of the machine's own controller; only the hottest represents the die
    none,
};

/// The rank of a thermal zone's type, or of the chip of the same name that the kernel registers for it.
DieRank zoneDieRank(std::string_view type);

/// The rank of an input of a chip that does not belong to a thermal zone.
DieRank inputDieRank(const HwmonChip& chip, const std::optional<std::string>& label);

/// Whether a label is the key under which Apple's Intel controllers measure a battery, such as TB0T.
bool isAppleBatteryKey(std::string_view key);

}  // namespace kestro
