#pragma once

#include "core/settings/user_settings.h"

#include <algorithm>
#include <array>

namespace kestro {

/// The settings that enable the dashboard's sections, from left to right.
inline std::array<const Setting<bool>*, 5> dashboardSectionSwitches(const UserSettings& settings) {
    return {&settings.showCompute, &settings.showCooling, &settings.showMemory, &settings.showNetwork,
            &settings.showTopProcesses};
}

/// The number of enabled sections.
inline int visibleDashboardSections(const UserSettings& settings) {
    return static_cast<int>(std::ranges::count_if(dashboardSectionSwitches(settings),
                                                  [](const auto* section) { return section->get(); }));
}

/// The width in points that fits this many sections; at least that of three.
constexpr int dashboardWidth(int visibleSections) {
    return std::max(visibleSections, 3) * 236 + 80;
}

}  // namespace kestro
