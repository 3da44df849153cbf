#include "platform/linux/sensors/hwmon_chip.h"

#include "core/base/text.h"
#include "platform/linux/kernel/kernel_files.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <memory>
#include <optional>
#include <tuple>
#include <utility>

namespace kestro {
namespace {

constexpr std::size_t chipLimit = 256;
constexpr std::size_t inputLimit = 128;

struct KnownChips {
    ChipKind kind;
    std::string_view prefixes;  ///< of names, separated by blanks
};

constexpr std::array<KnownChips, 8> knownChips{{
    {ChipKind::processor, "coretemp k10temp k8temp zenpower via_cputemp cpu_hwmon peci_cputemp sfctemp"},
    {ChipKind::controller, "macsmc applesmc"},
    {ChipKind::embedded,
     "thinkpad dell_smm cros_ec surface_thermal legion lenovo steamdeck system76 tuxedo hp_wmi"},
    {ChipKind::mainboard,
     "nct it8 w83 f71 f75 f81 f8000 sch dme1737 smsc47 lm78 lm79 lm80 lm85 lm96 vt1211 vt8231 via686a pc87 adt74 "
     "emc2 emc6 asb100 sis5595 gl518 gigabyte_wmi asus_wmi_sensors asusec atk0110 abituguru"},
    {ChipKind::graphics, "amdgpu radeon nouveau i915 xe"},
    {ChipKind::drive, "nvme drivetemp jc42 spd5118"},
    {ChipKind::firmware, "acpitz"},
    {ChipKind::repeating, "dell_ddv acpi_fan"},
}};

bool beginsWithAny(std::string_view name, std::string_view prefixes) {
    while (!prefixes.empty()) {
        const auto prefix = prefixes.substr(0, prefixes.find(' '));
        if (!prefix.empty() && name.starts_with(prefix)) {
            return true;
        }
        prefixes.remove_prefix(std::min(prefix.size() + 1, prefixes.size()));
    }
    return false;
}

/// A chip directory's path with links resolved, without the numbered last component.
std::string devicePath(const std::string& directory) {
    auto path = resolvedPath(directory);
    path.erase(std::min(path.rfind('/'), path.size()));
    if (path.ends_with("/hwmon")) {
        path.erase(path.size() - 6);
    }
    return path;
}

/// The chip's name, and where its attributes are: beside the name. That is the class device or, for drivers that
/// register the old way (hwmon_device_register), such as applesmc, the parent device.
std::optional<std::pair<std::string, std::string>> nameAndAttributes(const std::string& directory) {
    for (const auto& attributes : {directory, directory + "/device"}) {
        const auto text = readFile(attributes + "/name");
        if (auto name = text ? displayText(*text) : std::nullopt) {
            return std::pair(*std::move(name), attributes);
        }
    }
    return std::nullopt;
}

}  // namespace

ChipKind chipKind(std::string_view name) {
    for (const auto& [kind, prefixes] : knownChips) {
        if (beginsWithAny(name, prefixes)) {
            return kind;
        }
    }
    // Chips created by thermal zones use the zone's type as their name: cpu0_thermal, soc_thermal.
    const bool isProcessorZone = name.ends_with("_thermal") && (name.find("cpu") != std::string_view::npos ||
                                                                name.find("soc") != std::string_view::npos);
    return isProcessorZone ? ChipKind::processor : ChipKind::other;
}

std::vector<HwmonChip> listHwmonChips(const std::string& root) {
    std::vector<HwmonChip> chips;
    const auto parent = pathUnder(root, "/sys/class/hwmon");
    for (const auto& entry : listDirectory(parent)) {
        const auto directory = parent + "/" + entry;
        auto found = entry.starts_with("hwmon") ? nameAndAttributes(directory) : std::nullopt;
        if (found && chips.size() < chipLimit) {
            auto& [name, attributes] = *found;
            const auto kind = chipKind(name);
            auto device = devicePath(directory);
            auto owner = isDirectory(directory + "/device") ? directory + "/device" : device;
            chips.push_back({std::move(attributes), std::move(device), std::move(name), kind, std::move(owner)});
        }
    }
    std::ranges::stable_sort(chips, {}, [](const HwmonChip& chip) {
        return std::tuple(chip.kind == ChipKind::graphics, chip.device, chip.name);
    });
    return chips;
}

std::vector<std::uint32_t> listInputs(const HwmonChip& chip, std::string_view kind) {
    constexpr std::string_view suffix = "_input";
    std::vector<std::uint32_t> numbers;
    for (const auto& name : listDirectory(chip.directory)) {
        if (!name.starts_with(kind) || !name.ends_with(suffix) || name.size() <= kind.size() + suffix.size()) {
            continue;
        }
        const auto digits = std::string_view(name).substr(kind.size(), name.size() - kind.size() - suffix.size());
        if (const auto number = parseTrimmed<std::uint32_t>(digits)) {
            numbers.push_back(*number);
        }
    }
    std::ranges::sort(numbers);
    numbers.resize(std::min(numbers.size(), inputLimit));
    return numbers;
}

std::string resolvedPath(const std::string& path) {
    struct Free {
        void operator()(char* text) const { std::free(text); }
    };
    const std::unique_ptr<char, Free> resolved(::realpath(path.c_str(), nullptr));
    return resolved ? resolved.get() : path;
}

}  // namespace kestro
