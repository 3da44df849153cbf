#pragma once

#include "platform/linux/kernel/kernel_files.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kestro {

/// What a sensor chip belongs to, as far as it affects how readings are handled.
enum class ChipKind : std::uint8_t {
    other,       ///< a laptop's controller, network cards, power supplies and the like
    processor,   ///< measures the processor die
    controller,  ///< Apple's system controller: fans and labelled temperatures
    mainboard,   ///< a Super-I/O chip, whose inputs exist whether or not anything is connected to them
    graphics,    ///< may be asleep; reading it would wake it up
    drive,       ///< storage and memory modules: each reading sends a command to the device
    firmware,    ///< the ACPI zone: coarse, often constant
    repeating,   ///< duplicates the readings of another chip
};

/// Determined by the chip's name, which drivers keep stable.
ChipKind chipKind(std::string_view name);

/// A sensor chip of /sys/class/hwmon (Documentation/hwmon/sysfs-interface.rst).
struct HwmonChip {
    std::string directory;  ///< of its attributes; changes when the kernel renumbers chips
    std::string device;     ///< path of the parent device; stable in combination with the name
    std::string name;
    ChipKind kind = ChipKind::other;
};

/// Every chip that has a name, ordered by device and name, graphics cards last. The order does not depend on the
/// kernel's numbering.
std::vector<HwmonChip> listHwmonChips(const std::string& root);

/// The numbers N of the chip's attributes "<kind>N_input", ascending; only the lowest 128.
std::vector<std::uint32_t> listInputs(const HwmonChip& chip, std::string_view kind);

/// Detects whether a device is asleep. Reading the sensors of a sleeping graphics card wakes it up, which drains
/// the battery more than the program itself does.
class SleepGate {
public:
    SleepGate() = default;
    explicit SleepGate(const HwmonChip& chip);

    /// Whether this kind of chip sleeps while the machine is awake.
    bool canSleep() const { return canSleep_; }

    /// False for devices that cannot sleep or do not report their state.
    bool isAsleep(ReadBuffer& buffer);

private:
    bool canSleep_ = false;
    PersistentFile status_;
};

}  // namespace kestro
