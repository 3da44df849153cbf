#pragma once

#include "core/base/enumeration.h"

#include <array>
#include <optional>
#include <string_view>

namespace kestro {

/// How long a keep-awake period lasts.
enum class KeepAwakeDuration { indefinite, minutes15, minutes30, hours1, hours2, hours4 };

template <>
struct EnumerationTable<KeepAwakeDuration> {
    struct Row {
        KeepAwakeDuration value;
        std::string_view rawValue;
        std::optional<double> seconds;
    };
    static constexpr std::array rows{
        Row{KeepAwakeDuration::indefinite, "Indefinitely", std::nullopt},
        Row{KeepAwakeDuration::minutes15, "15 Minutes", 900.0},
        Row{KeepAwakeDuration::minutes30, "30 Minutes", 1800.0},
        Row{KeepAwakeDuration::hours1, "1 Hour", 3600.0},
        Row{KeepAwakeDuration::hours2, "2 Hours", 7200.0},
        Row{KeepAwakeDuration::hours4, "4 Hours", 14400.0},
    };
};

/// Length of the period; nullopt: it never ends on its own.
constexpr std::optional<double> seconds(KeepAwakeDuration duration) {
    return tableRow(duration).seconds;
}

/// What a keep-awake period keeps awake.
enum class KeepAwakeTarget { displayAndSystem, systemOnly };

template <>
struct EnumerationTable<KeepAwakeTarget> {
    struct Row {
        KeepAwakeTarget value;
        std::string_view rawValue;
        std::string_view assertionType;
    };
    static constexpr std::array rows{
        Row{KeepAwakeTarget::displayAndSystem, "Display & System", "PreventUserIdleDisplaySleep"},
        Row{KeepAwakeTarget::systemOnly, "System Only (Display May Sleep)", "PreventUserIdleSystemSleep"},
    };
};

/// The type of power assertion that the target requires.
constexpr std::string_view assertionType(KeepAwakeTarget target) {
    return tableRow(target).assertionType;
}

}  // namespace kestro
