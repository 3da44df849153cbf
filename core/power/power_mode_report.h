#pragma once

#include <string_view>

#include "core/power/system_power_mode.h"

namespace kestro {

/// The mode that the power-management tool's report ("pmset -g") names; `balanced` when no line decides or
/// the report is not UTF-8. A "powermode" line with a value always decides, a "lowpowermode" line only when
/// it is on, and the first line that decides wins. Pure; any thread.
SystemPowerMode powerModeOfReport(std::string_view report);

}  // namespace kestro
