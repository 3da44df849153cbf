#pragma once

#include "core/settings/user_settings.h"

#include <algorithm>
#include <array>

namespace kestro {

/// The switches of the dashboard's sections, in the sections' order from left to right.
inline std::array<const Setting<bool>*, 5> dashboardSectionSwitches(const UserSettings& settings) {
    return {&settings.showCompute, &settings.showCooling, &settings.showMemory, &settings.showNetwork,
            &settings.showTopProcesses};
}

/// How many sections are switched on.
inline int visibleDashboardSections(const UserSettings& settings) {
    return static_cast<int>(std::ranges::count_if(dashboardSectionSwitches(settings),
                                                  [](const auto* section) { return section->get(); }));
}

/// The width in points that suits this many sections; never less than three need.
constexpr int dashboardWidth(int visibleSections) {
    return std::max(visibleSections, 3) * 236 + 80;
}

}  // namespace kestro
