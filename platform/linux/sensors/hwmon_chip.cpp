#include "platform/linux/sensors/hwmon_chip.h"

#include "core/base/text.h"

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

struct KnownChip {
    std::string_view prefix;
    ChipKind kind;
};

constexpr std::array<KnownChip, 42> knownChips{{
    {"coretemp", ChipKind::processor},    {"k10temp", ChipKind::processor},
    {"k8temp", ChipKind::processor},      {"zenpower", ChipKind::processor},
    {"via_cputemp", ChipKind::processor}, {"macsmc", ChipKind::controller},
    {"applesmc", ChipKind::controller},   {"nct", ChipKind::mainboard},
    {"it8", ChipKind::mainboard},         {"w83", ChipKind::mainboard},
    {"f71", ChipKind::mainboard},         {"f81", ChipKind::mainboard},
    {"f8000", ChipKind::mainboard},       {"sch5", ChipKind::mainboard},
    {"dme1737", ChipKind::mainboard},     {"smsc47", ChipKind::mainboard},
    {"lm78", ChipKind::mainboard},        {"lm80", ChipKind::mainboard},
    {"lm85", ChipKind::mainboard},        {"lm96", ChipKind::mainboard},
    {"vt1211", ChipKind::mainboard},      {"vt8231", ChipKind::mainboard},
    {"via686a", ChipKind::mainboard},     {"pc87", ChipKind::mainboard},
    {"adt74", ChipKind::mainboard},       {"emc2", ChipKind::mainboard},
    {"emc6", ChipKind::mainboard},        {"asb100", ChipKind::mainboard},
    {"sis5595", ChipKind::mainboard},     {"gl518", ChipKind::mainboard},
    {"amdgpu", ChipKind::graphics},       {"radeon", ChipKind::graphics},
    {"nouveau", ChipKind::graphics},      {"i915", ChipKind::graphics},
    {"xe", ChipKind::graphics},           {"nvme", ChipKind::drive},
    {"drivetemp", ChipKind::drive},       {"jc42", ChipKind::drive},
    {"spd5118", ChipKind::drive},         {"acpitz", ChipKind::firmware},
    {"dell_ddv", ChipKind::repeating},    {"acpi_fan", ChipKind::repeating},
}};

/// A chip directory's path with links resolved, without the numbered last component.
std::string devicePath(const std::string& directory) {
    struct Free {
        void operator()(char* text) const { std::free(text); }
    };
    const std::unique_ptr<char, Free> resolved(::realpath(directory.c_str(), nullptr));
    std::string path = resolved ? resolved.get() : directory;
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
    const auto* const known =
        std::ranges::find_if(knownChips, [name](const KnownChip& chip) { return name.starts_with(chip.prefix); });
    if (known != knownChips.end()) {
        return known->kind;
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
            chips.push_back({std::move(attributes), devicePath(directory), std::move(name), kind});
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

SleepGate::SleepGate(const HwmonChip& chip)
    : canSleep_(chip.kind == ChipKind::graphics),
      status_(chip.directory + "/device/power/runtime_status", PersistentFile::WhenGone::stayGone) {}

bool SleepGate::isAsleep(ReadBuffer& buffer) {
    const auto status = canSleep_ ? status_.read(buffer) : std::nullopt;
    return status && status->starts_with("suspend");
}

}  // namespace kestro
