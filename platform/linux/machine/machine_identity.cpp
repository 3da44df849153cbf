#include "platform/linux/machine/machine_identity.h"

#include "core/base/text.h"
#include "platform/linux/kernel/kernel_files.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <utility>

namespace kestro {
namespace {

// Enough for the first core of any machine and all cores of an Arm one; a server's file is far longer.
constexpr std::size_t cpuInfoPrefix = 65536;

constexpr std::array<std::string_view, 20> fillers{"to be filled by o.e.m.",
                                                   "to be filled by oem",
                                                   "system product name",
                                                   "system manufacturer",
                                                   "default string",
                                                   "not applicable",
                                                   "not specified",
                                                   "not available",
                                                   "none",
                                                   "n/a",
                                                   "unknown",
                                                   "oem",
                                                   "o.e.m.",
                                                   "product name",
                                                   "all series",
                                                   "type1productconfigid",
                                                   "invalid",
                                                   "empty",
                                                   "system name",
                                                   "undefined"};

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

struct ArmMaker {
    std::uint32_t implementer;
    std::string_view name;
};

// arch/arm64/include/asm/cputype.h
constexpr std::array<ArmMaker, 9> armMakers{{{0x41, "Arm"},
                                             {0x42, "Broadcom"},
                                             {0x43, "Cavium"},
                                             {0x46, "Fujitsu"},
                                             {0x48, "HiSilicon"},
                                             {0x4e, "NVIDIA"},
                                             {0x51, "Qualcomm"},
                                             {0x61, "Apple"},
                                             {0xc0, "Ampere"}}};

struct ArmPart {
    std::uint32_t number;
    std::string_view name;
};

constexpr std::array<ArmPart, 22> armParts{
    {{0xd03, "Cortex-A53"},  {0xd04, "Cortex-A35"},  {0xd05, "Cortex-A55"},  {0xd07, "Cortex-A57"},
     {0xd08, "Cortex-A72"},  {0xd09, "Cortex-A73"},  {0xd0a, "Cortex-A75"},  {0xd0b, "Cortex-A76"},
     {0xd0c, "Neoverse N1"}, {0xd0d, "Cortex-A77"},  {0xd40, "Neoverse V1"}, {0xd41, "Cortex-A78"},
     {0xd44, "Cortex-X1"},   {0xd46, "Cortex-A510"}, {0xd47, "Cortex-A710"}, {0xd48, "Cortex-X2"},
     {0xd49, "Neoverse N2"}, {0xd4b, "Cortex-A78C"}, {0xd4d, "Cortex-A715"}, {0xd4e, "Cortex-X3"},
     {0xd4f, "Neoverse V2"}, {0xd80, "Cortex-A520"}}};

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

std::optional<std::string> armBrand(std::uint32_t implementer, std::uint32_t part) {
    const auto* const maker = std::ranges::find(armMakers, implementer, &ArmMaker::implementer);
    if (maker == armMakers.end()) {
        return std::nullopt;
    }
    const auto* const known = std::ranges::find(armParts, part, &ArmPart::number);
    if (maker->implementer == 0x41 && known != armParts.end()) {
        return fmt::format("{} {}", maker->name, known->name);
    }
    return fmt::format("{} processor", maker->name);
}

std::optional<std::string> readText(const std::string& root, std::string_view path) {
    const auto text = readFile(pathUnder(root, path));
    return text ? displayText(*text) : std::nullopt;
}

}  // namespace

bool isFirmwareFiller(std::string_view text) {
    const auto name = lowered(trimmed(text));
    const bool isOneCharacter = name.find_first_not_of(name.empty() ? ' ' : name.front()) == std::string::npos;
    return isOneCharacter || std::ranges::find(fillers, name) != fillers.end();
}

std::optional<std::string> parseProcessorBrand(std::string_view cpuInfo) {
    std::array<std::optional<std::string>, brandKeys.size()> brands;
    std::optional<std::uint32_t> implementer;
    std::optional<std::uint32_t> part;
    while (!cpuInfo.empty() && !brands.front()) {
        const auto line = takeLine(cpuInfo);
        const auto colon = line.find(':');
        if (colon == std::string_view::npos) {
            continue;
        }
        const auto key = trimmed(line.substr(0, colon));
        const auto value = line.substr(colon + 1);
        const auto* const known = std::ranges::find(brandKeys, key);
        if (known != brandKeys.end()) {
            auto& brand = brands[static_cast<std::size_t>(known - brandKeys.begin())];
            brand = brand ? brand : displayText(value);
        } else if (key == "CPU implementer") {
            implementer = parseHexadecimal(value);
        } else if (key == "CPU part") {
            // On a machine with two core sizes, the last cores are the large ones.
            part = parseHexadecimal(value);
        }
    }
    const auto brand = std::ranges::find_if(brands, [](const auto& candidate) { return candidate.has_value(); });
    if (brand != brands.end()) {
        return *brand;
    }
    return implementer ? armBrand(*implementer, part.value_or(0)) : std::nullopt;
}

std::optional<std::string> appleChipName(std::string_view compatible) {
    while (!compatible.empty()) {
        const auto end = compatible.find('\0');
        const auto name = compatible.substr(0, end);
        compatible.remove_prefix(end == std::string_view::npos ? compatible.size() : end + 1);
        const auto* const chip = std::ranges::find(appleChips, name, &ChipName::first);
        if (chip != appleChips.end()) {
            return std::string(chip->second);
        }
    }
    return std::nullopt;
}

std::optional<std::string> readMachineModel(const std::string& root) {
    for (const std::string_view path : {"/proc/device-tree/model", "/sys/firmware/devicetree/base/model",
                                        "/sys/class/dmi/id/product_name", "/sys/class/dmi/id/board_name"}) {
        auto model = readText(root, path);
        if (model && !isFirmwareFiller(*model)) {
            return model;
        }
    }
    return readText(root, "/proc/sys/kernel/arch");
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
    return text ? parseProcessorBrand(*text) : std::nullopt;
}

}  // namespace kestro
