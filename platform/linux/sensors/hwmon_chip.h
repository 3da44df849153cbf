#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kestro {

/// What a sensor chip belongs to, as far as it affects how readings are handled.
enum class ChipKind : std::uint8_t {
    other,       ///< network cards, power supplies, thermal zones and the like
    processor,   ///< measures the processor die
    controller,  ///< Apple's system controller: fans and labelled temperatures
    embedded,    ///< a laptop's embedded controller: fans and temperatures, some of them without a sensor
    mainboard,   ///< a Super-I/O chip, whose inputs exist whether or not anything is connected to them
    graphics,    ///< a graphics card
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
    std::string parent = {};  ///< path of the parent device through the class; changes like `directory`
};

/// Every chip that has a name, ordered by device and name, graphics cards last. The order does not depend on the
/// kernel's numbering.
std::vector<HwmonChip> listHwmonChips(const std::string& root);

/// The numbers N of the chip's attributes "<kind>N_input", ascending; only the lowest 128.
std::vector<std::uint32_t> listInputs(const HwmonChip& chip, std::string_view kind);

/// An absolute path without links; `path` itself if it does not exist.
std::string resolvedPath(const std::string& path);

}  // namespace kestro
