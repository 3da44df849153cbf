#pragma once

#include "core/model/system_power_mode.h"

#include <string_view>

namespace kestro {

/// The mode named in the power-management tool's report ("pmset -g"); `balanced` when no line selects one or the
/// report is not UTF-8. A "powermode" line with a value always selects, a "lowpowermode" line only when it is on,
/// and the first match wins. Pure; any thread.
SystemPowerMode powerModeOfReport(std::string_view report);

}  // namespace kestro
