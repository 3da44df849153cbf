#pragma once

#include "platform/linux/kernel_files.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kestro {

/// What a sensor chip belongs to, as far as its readings are treated differently.
enum class ChipKind : std::uint8_t {
    other,       ///< a laptop's controller, network cards, power supplies and whatever else there is
    processor,   ///< measures the processor die
    controller,  ///< Apple's system controller: fans and labelled temperatures of everything
    mainboard,   ///< a Super-I/O chip, whose inputs exist whether or not anything is connected to them
    graphics,    ///< may be asleep, and would wake up for being read
    drive,       ///< storage and memory modules: a reading is a command to the device
    firmware,    ///< ACPI's own zone: coarse, often a constant
    repeating,   ///< tells again what another chip of the machine tells
};

/// By the chip's name (hwmonN/name), which drivers keep stable.
ChipKind chipKind(std::string_view name);

/// A sensor chip of /sys/class/hwmon (Documentation/hwmon/sysfs-interface.rst).
struct HwmonChip {
    std::string directory;  ///< changes with every renumbering
    std::string device;     ///< the path of the device it sits on: together with the name it stays the same
    std::string name;
    ChipKind kind = ChipKind::other;
};

/// Every chip that states a name, ordered by device and name; graphics cards come last. The order does not
/// depend on the numbers that the kernel gave out.
std::vector<HwmonChip> listHwmonChips(const std::string& root);

/// The numbers N of the chip's attributes "<kind>N_input", ascending; of more than 128 the lowest.
std::vector<std::uint32_t> listInputs(const HwmonChip& chip, std::string_view kind);

/// Tells whether a device sleeps. Reading the sensors of a sleeping graphics card wakes it up and costs the
/// battery more than the program itself does.
class SleepGate {
public:
    SleepGate() = default;
    explicit SleepGate(const HwmonChip& chip);

    /// Whether the chip is of a kind that sleeps while the machine is awake.
    bool canSleep() const { return canSleep_; }

    /// False for devices that cannot sleep or do not say.
    bool isAsleep(ReadBuffer& buffer);

private:
    bool canSleep_ = false;
    PersistentFile status_;
};

}  // namespace kestro
