#include "platform/linux/sensors/die_rank.h"

#include "core/base/text.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace kestro {
namespace {

template <std::size_t count>
bool containsAny(std::string_view name, const std::array<std::string_view, count>& words) {
    return std::ranges::any_of(words, [name](auto word) { return name.find(word) != name.npos; });
}

// "b0d4" is the firmware's name of the processor's own thermal device.
constexpr std::array<std::string_view, 5> processorWords{"cpu", "soc", "tdie", "pkg_temp", "b0d4"};
constexpr std::array<std::string_view, 4> coreWords{"cluster", "package", "core", "little"};

// Zones elsewhere on the chip or the board, even if their names also mention a core or the package.
constexpr std::array<std::string_view, 17> otherWords{"gpu",  "npu",   "vpu",  "ddr",    "dram", "mem",
                                                      "pmic", "batt",  "char", "wifi",   "wlan", "modem",
                                                      "skin", "board", "pch",  "camera", "video"};

// Inputs of a controller that are far from the processor: batteries, radios and devices with sensors of their own.
constexpr std::array<std::string_view, 13> distantWords{"batt",  "wifi",      "wi-fi", "wlan", "wwan",
                                                        "modem", "bluetooth", "/bt",   "gpu",  "ambient",
                                                        "hdd",   "dimm",      "video"};

// Inputs whose labels mention the processor but which measure its socket, its supply or a limit.
constexpr std::array<std::string_view, 7> besideProcessorWords{"socket", "vrm",         "fan",    "dimm",
                                                               "gpu",    "calibration", "ambient"};

bool isOneOf(std::string_view token, std::string_view words) {
    for (auto word = takeField(words); !word.empty(); word = takeField(words)) {
        if (token == word) {
            return true;
        }
    }
    return false;
}

bool isLetter(char character) {
    return character >= 'a' && character <= 'z';
}

/// Removes the first run of letters from `rest` and returns it; empty when none is left.
std::string_view takeWord(std::string_view& rest) {
    const auto begin = std::ranges::find_if(rest, isLetter);
    const auto end = std::find_if_not(begin, rest.end(), isLetter);
    const std::string_view word(begin, end);
    rest = std::string_view(end, rest.end());
    return word;
}

bool hasWord(std::string_view name, std::string_view words) {
    for (auto word = takeWord(name); !word.empty(); word = takeWord(name)) {
        if (isOneOf(word, words)) {
            return true;
        }
    }
    return false;
}

/// Whether a zone's name consists of words that any sensor has and of names of systems on a chip, such as
/// "imx_thermal_zone" and "tsens_tz_sensor3".
bool isUnnamedZone(std::string_view name) {
    constexpr std::string_view words =
        "thermal therm zone sensor sensors tsens tz temp temperature main imx bcm armada kirkwood dove exynos "
        "rcar "
        "spear sun sunxi tegra meson";
    for (auto word = takeWord(name); !word.empty(); word = takeWord(name)) {
        // A single letter belongs to the address of the sensor's registers.
        if (word.size() > 1 && !isOneOf(word, words)) {
            return false;
        }
    }
    return true;
}

/// Whether a key of Apple's Intel controllers measures the processor: its die, a core or their vicinity, as TC0D,
/// TC1C and TC0P do.
bool isAppleProcessorKey(std::string_view key) {
    constexpr std::string_view measured = "CDEFPcp";
    return key.size() == 4 && key.starts_with("TC") && measured.find(key[3]) != measured.npos &&
           (key[2] == 'A' || key[2] == 'B' || (key[2] >= '0' && key[2] <= '9'));
}

bool isAppleRadioKey(std::string_view key) {
    return key.size() == 4 && key.starts_with("TW");
}

bool namesProcessor(std::string_view text) {
    const bool isProcessor = text.find("cpu") != text.npos || text.find("tdie") != text.npos ||
                             text.starts_with("peci") || text.find("tsi") == 0 || text.starts_with("amd tsi") ||
                             hasWord(text, "soc apu") || (text.starts_with("ibmpowernv") && hasWord(text, "core"));
    return isProcessor && text.find("batt") == text.npos && !containsAny(text, besideProcessorWords);
}

DieRank controllerDieRank(std::string_view label) {
    const auto name = lowered(label);
    if (isAppleProcessorKey(label) || namesProcessor(name)) {
        return DieRank::processorLabel;
    }
    const bool isDistant = containsAny(name, distantWords) || isAppleBatteryKey(label) || isAppleRadioKey(label);
    return isDistant ? DieRank::none : DieRank::controller;
}

}  // namespace

bool isAppleBatteryKey(std::string_view key) {
    return key.size() == 4 && key.starts_with("TB") && key.back() == 'T';
}

DieRank zoneDieRank(std::string_view type) {
    const auto name = lowered(type);
    if (chipKind(name) == ChipKind::firmware) {
        return DieRank::firmwareZone;
    }
    if (containsAny(name, otherWords)) {
        return DieRank::none;
    }
    if (containsAny(name, processorWords) || name.starts_with("bcm2835")) {
        return DieRank::processorZone;
    }
    if (containsAny(name, coreWords) || hasWord(name, "big mid mpu cls tj apc")) {
        return DieRank::coreZone;
    }
    return isUnnamedZone(name) ? DieRank::unnamedZone : DieRank::none;
}

DieRank inputDieRank(const HwmonChip& chip, const std::optional<std::string>& label) {
    switch (chip.kind) {
        case ChipKind::processor:
            return DieRank::processorChip;
        case ChipKind::firmware:
            return DieRank::firmwareZone;
        case ChipKind::controller:
        case ChipKind::embedded:
            return controllerDieRank(label.value_or(""));
        case ChipKind::mainboard:
        case ChipKind::repeating:
            return namesProcessor(lowered(label.value_or(""))) ? DieRank::processorLabel : DieRank::none;
        case ChipKind::other:
            return namesProcessor(lowered(chip.name + " " + label.value_or(""))) ? DieRank::processorLabel
                                                                                 : DieRank::none;
        case ChipKind::graphics:
        case ChipKind::drive:
            break;
    }
    return DieRank::none;
}

}  // namespace kestro
