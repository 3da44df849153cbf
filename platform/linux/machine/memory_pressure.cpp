#include "platform/linux/machine/memory_pressure.h"

#include "core/base/text.h"

namespace kestro {
namespace {

std::optional<double> parseShare(std::string_view line) {
    constexpr std::string_view key = "avg10=";
    const auto field = takeField(line);
    const auto share = field.starts_with(key) ? parseTrimmed<double>(field.substr(key.size())) : std::nullopt;
    return share && *share >= 0 ? share : std::nullopt;
}

}  // namespace

std::optional<PressureStall> parsePressureStall(std::string_view text) {
    std::optional<double> some;
    std::optional<double> full;
    while (!text.empty()) {
        auto line = takeLine(text);
        const auto name = takeField(line);
        if (name == "some") {
            some = parseShare(line);
        } else if (name == "full") {
            full = parseShare(line);
        }
    }
    return some ? std::optional(PressureStall{*some, full.value_or(0)}) : std::nullopt;
}

std::int32_t pressureLevel(const PressureStall& stall) {
    if (stall.full >= 5 || stall.some >= 20) {
        return pressureCritical;
    }
    return stall.full >= 1 || stall.some >= 5 ? pressureWarning : pressureNormal;
}

std::int32_t pressureLevel(const MemoryInfo& info, std::uint64_t reclaimable) {
    const double available = static_cast<double>(info.available) + static_cast<double>(reclaimable);
    const double share = available / static_cast<double>(info.total);
    if (share < 0.04) {
        return pressureCritical;
    }
    return share < 0.10 ? pressureWarning : pressureNormal;
}

}  // namespace kestro
