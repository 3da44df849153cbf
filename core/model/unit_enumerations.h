#pragma once

#include "core/base/digit_grouping.h"
#include "core/base/enumeration.h"

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace kestro {

enum class TemperatureUnit { celsius, fahrenheit };

template <>
struct EnumerationTable<TemperatureUnit> {
    using Row = LabelRow<TemperatureUnit>;
    static constexpr std::array rows{
        Row{TemperatureUnit::celsius, "Celsius (°C)"},
        Row{TemperatureUnit::fahrenheit, "Fahrenheit (°F)"},
    };
};

/// A temperature in degrees Celsius as text in `unit` with one decimal: "48.0°C", "118.4°F".
std::string format(TemperatureUnit unit, double celsius);

enum class FanSpeedUnit { kRPM, rawRPM };

template <>
struct EnumerationTable<FanSpeedUnit> {
    using Row = LabelRow<FanSpeedUnit>;
    static constexpr std::array rows{
        Row{FanSpeedUnit::kRPM, "Compact (e.g. 7.8k)"},
        Row{FanSpeedUnit::rawRPM, "Full (e.g. 7,820 RPM)"},
    };
};

/// A speed in revolutions per minute as text: compact "7.8k" (just "850" below 1000), or full "7,820 RPM" with the
/// digits grouped as in the user's locale.
std::string format(FanSpeedUnit unit, std::int64_t rpm, const DigitGrouping& grouping = DigitGrouping::ofUser());

}  // namespace kestro
