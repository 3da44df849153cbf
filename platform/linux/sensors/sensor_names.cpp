#include "platform/linux/sensors/sensor_names.h"

#include "core/base/text.h"

#include <algorithm>
#include <array>
#include <utility>

namespace kestro {
namespace {

constexpr std::array<std::pair<std::string_view, std::string_view>, 3> dieWords{
    {{"tdie", "die"}, {"soc", "package"}, {"cpu", "processor"}}};

/// Shortens "Package id 1" of coretemp, formerly "Physical id 1", and keeps a processor chip's other labels.
std::string processorLabel(std::string_view label) {
    for (const std::string_view package : {"Package id ", "Physical id "}) {
        if (label.starts_with(package)) {
            const auto number = label.substr(package.size());
            return number == "0" ? "Package" : "Package " + std::string(number);
        }
    }
    return std::string(label);
}

}  // namespace

bool isDieName(std::string_view product) {
    const auto name = lowered(product);
    return name.find("battery") == std::string::npos && std::ranges::any_of(dieWords, [&name](const auto& word) {
               return name.find(word.first) != std::string::npos;
           });
}

std::string sensorName(const HwmonChip& chip, std::uint32_t number, const std::optional<std::string>& label) {
    const auto input = label.value_or("temp" + std::to_string(number));
    if (chip.kind == ChipKind::processor) {
        return "CPU " + processorLabel(input);
    }
    if (chip.kind == ChipKind::controller && label) {
        return *label;
    }
    return chip.name + " " + input;
}

std::string zoneName(std::string_view type) {
    return type == "x86_pkg_temp" ? "CPU Package" : std::string(type);
}

std::string nameOutsideDie(std::string_view product) {
    std::string result(product);
    auto name = lowered(product);
    for (const auto& [word, replacement] : dieWords) {
        for (auto at = name.find(word); at != std::string::npos;) {
            result.replace(at, word.size(), replacement);
            name.replace(at, word.size(), replacement);
            // What precedes it and the replacement may form the word again, as in "ttdie".
            at = name.find(word, at - std::min(at, word.size()));
        }
    }
    return result;
}

bool isFloatingInput(std::string_view label) {
    return label.starts_with("AUXTIN") || label.starts_with("CPUTIN");
}

bool isGraphicsName(std::string_view name) {
    return containsLowered(name, "gpu");
}

}  // namespace kestro
