#pragma once

#include <fmt/format.h>

#include <optional>
#include <string>
#include <string_view>

namespace kestro {

// What an administrator runs to switch the power mode. Pure; any thread.

/// The script that sets the power-management tool's `powermode`, with the administrator's consent.
inline std::string powerModeScript(std::string_view mode) {
    return fmt::format("do shell script \"pmset -a powermode {}\" with administrator privileges", mode);
}

/// The mode that a script sets: 0, 1 or 2. nullopt: it is any other script.
inline std::optional<int> powerModeOfScript(std::string_view script) {
    for (const int mode : {0, 1, 2}) {
        if (script == powerModeScript(std::to_string(mode))) {
            return mode;
        }
    }
    return std::nullopt;
}

}  // namespace kestro
