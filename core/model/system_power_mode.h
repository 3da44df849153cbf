#pragma once

#include "core/base/enumeration.h"

#include <array>
#include <string_view>

namespace kestro {

/// The system-wide energy mode.
enum class SystemPowerMode { lowPower, balanced, highPower };

template <>
struct EnumerationTable<SystemPowerMode> {
    struct Row {
        SystemPowerMode value;
        std::string_view rawValue;
        std::string_view shortTag;
        std::string_view description;
        std::string_view iconName;
        std::string_view toolValue;
    };
    static constexpr std::array rows{
        Row{SystemPowerMode::lowPower, "Low Power", "LOW",
            "Reduces energy usage to increase battery life and quiet fans", "leaf.fill", "1"},
        Row{SystemPowerMode::balanced, "Balanced (Automatic)", "AUTO",
            "Dynamically optimizes CPU/GPU frequencies and thermal envelopes", "gauge.with.needle", "0"},
        Row{SystemPowerMode::highPower, "High Power", "HIGH",
            "Optimizes cooling and clocks for sustained intensive workflows", "bolt.batteryblock.fill", "2"},
    };
};

constexpr std::string_view shortTag(SystemPowerMode mode) {
    return tableRow(mode).shortTag;
}

/// The number that the power-management tool uses for the mode; not in case order.
constexpr std::string_view toolValue(SystemPowerMode mode) {
    return tableRow(mode).toolValue;
}

}  // namespace kestro
