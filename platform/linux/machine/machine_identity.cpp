#include "platform/linux/machine/machine_identity.h"

#include "core/base/text.h"
#include "platform/linux/kernel/kernel_files.h"
#include "platform/linux/machine/arm_processors.h"
#include "platform/linux/machine/firmware_identity.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <utility>
#include <vector>

namespace kestro {
namespace {

// Enough for the first core of any machine and all cores of an Arm one; a server's file is far longer.
constexpr std::size_t cpuInfoPrefix = 65536;

using ChipName = std::pair<std::string_view, std::string_view>;

constexpr std::array<ChipName, 15> appleChips{{{"apple,t8103", "Apple M1"},
                                               {"apple,t6000", "Apple M1 Pro"},
                                               {"apple,t6001", "Apple M1 Max"},
                                               {"apple,t6002", "Apple M1 Ultra"},
                                               {"apple,t8112", "Apple M2"},
                                               {"apple,t6020", "Apple M2 Pro"},
                                               {"apple,t6021", "Apple M2 Max"},
                                               {"apple,t6022", "Apple M2 Ultra"},
                                               {"apple,t8122", "Apple M3"},
                                               {"apple,t6030", "Apple M3 Pro"},
                                               {"apple,t6031", "Apple M3 Max"},
                                               {"apple,t6034", "Apple M3 Max"},
                                               {"apple,t8132", "Apple M4"},
                                               {"apple,t6040", "Apple M4 Pro"},
                                               {"apple,t6041", "Apple M4 Max"}}};

/// Keys under which architectures state the processor, in order of preference.
constexpr std::array<std::string_view, 6> brandKeys{"model name", "Model Name", "cpu model",
                                                    "uarch",      "cpu",        "Hardware"};

std::optional<std::uint32_t> parseHexadecimal(std::string_view text) {
    text = trimmed(text);
    if (!text.starts_with("0x")) {
        return std::nullopt;
    }
    text.remove_prefix(2);
    std::uint32_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, 16);
    return error == std::errc{} && end == text.data() + text.size() ? std::optional(value) : std::nullopt;
}

/// A core's numbers as /proc/cpuinfo lists them.
struct ArmCore {
    std::uint32_t cpu = 0;
    std::optional<std::uint32_t> implementer;
    std::uint32_t part = 0;
};

std::optional<std::string> armBrand(const std::vector<ArmCore>& cores, const CoreFigures& capacityOfCore) {
    const ArmCore* largest = nullptr;
    std::uint32_t largestCapacity = 0;
    for (const auto& core : cores) {
        const auto found = std::ranges::find(capacityOfCore, core.cpu, &CoreFigures::value_type::first);
        const auto capacity = found != capacityOfCore.end() ? found->second : 0;
        if (core.implementer && capacity >= largestCapacity) {
            largest = &core;
            largestCapacity = capacity;
        }
    }
    return largest != nullptr ? armProcessorName(*largest->implementer, largest->part) : std::nullopt;
}

/// Virtual machines that describe themselves by a device tree.
std::optional<std::string> virtualDeviceTree(std::string_view model) {
    if (model.find("qemu") != std::string_view::npos) {
        return "QEMU/KVM";
    }
    return model == "linux,dummy-virt" ? std::optional<std::string>("KVM") : std::nullopt;
}

std::optional<std::string> readText(const std::string& root, std::string_view path) {
    const auto text = readFile(pathUnder(root, path));
    return text ? displayText(*text) : std::nullopt;
}

}  // namespace

std::optional<std::string> parseProcessorBrand(std::string_view cpuInfo, const CoreFigures& capacityOfCore) {
    std::array<std::optional<std::string>, brandKeys.size()> brands;
    std::vector<ArmCore> cores;
    ArmCore core;
    while (!cpuInfo.empty() && !brands.front()) {
        const auto line = takeLine(cpuInfo);
        const auto colon = line.find(':');
        if (colon == std::string_view::npos) {
            continue;
        }
        const auto key = trimmed(line.substr(0, colon));
        const auto value = trimmed(line.substr(colon + 1));
        const auto* const known = std::ranges::find(brandKeys, key);
        // On Arm, the "model name" is that of the architecture.
        if (known != brandKeys.end() && !value.starts_with("ARMv") && !value.starts_with("AArch64")) {
            auto& brand = brands[static_cast<std::size_t>(known - brandKeys.begin())];
            brand = brand ? brand : displayText(value);
        } else if (key == "processor") {
            core = {parseTrimmed<std::uint32_t>(value).value_or(0), std::nullopt, 0};
        } else if (key == "CPU implementer") {
            core.implementer = parseHexadecimal(value);
            cores.push_back(core);
        } else if (key == "CPU part" && !cores.empty()) {
            cores.back().part = parseHexadecimal(value).value_or(0);
        }
    }
    const auto brand = std::ranges::find_if(brands, [](const auto& candidate) { return candidate.has_value(); });
    return brand != brands.end() ? *brand : armBrand(cores, capacityOfCore);
}

std::optional<std::string> appleChipName(std::string_view compatible) {
    while (!compatible.empty()) {
        const auto end = compatible.find('\0');
        const auto name = compatible.substr(0, end);
        compatible.remove_prefix(end == std::string_view::npos ? compatible.size() : end + 1);
        const auto* const chip =
            name.starts_with("apple,") ? std::ranges::find(appleChips, name, &ChipName::first) : appleChips.end();
        if (chip != appleChips.end()) {
            return std::string(chip->second);
        }
    }
    return std::nullopt;
}

std::optional<std::string> readMachineModel(const std::string& root) {
    for (const std::string_view path : {"/proc/device-tree/model", "/sys/firmware/devicetree/base/model"}) {
        auto model = readText(root, path);
        if (model && !isFirmwareFiller(*model)) {
            auto machine = virtualDeviceTree(*model);
            return machine ? machine : model;
        }
    }
    const auto firmware = FirmwareIdentity::read(root);
    if (auto machine = virtualMachineName(firmware)) {
        return machine;
    }
    if (auto name = productName(firmware)) {
        return name;
    }
    // Paravirtual Xen guests have no firmware tables.
    return readText(root, "/sys/hypervisor/type") == "xen" ? "Xen" : readText(root, "/proc/sys/kernel/arch");
}

std::optional<std::string> readProcessorBrand(const std::string& root) {
    const auto compatible = readFile(pathUnder(root, "/proc/device-tree/compatible"));
    auto chip = compatible ? appleChipName(*compatible) : std::nullopt;
    if (chip) {
        return chip;
    }
    ReadBuffer buffer(cpuInfoPrefix);
    PersistentFile file(pathUnder(root, "/proc/cpuinfo"));
    const auto text = file.readBeginning(buffer, cpuInfoPrefix);
    if (!text) {
        return std::nullopt;
    }
    const bool isArm = text->find("CPU implementer") != std::string_view::npos;
    return parseProcessorBrand(*text, isArm ? readCapacities(root) : CoreFigures());
}

}  // namespace kestro
