#pragma once

#include "core/telemetry/fan_telemetry.h"
#include "ui/menus/menu_entry.h"

#include <QString>

#include <functional>
#include <vector>

namespace kestro {

class FanControlManager;
class PowerModeManager;

/// The menu of the cooling item in the current state. The managers outlive it.
Menu coolingMenu(const std::vector<FanTelemetry>& fans, FanControlManager& fanManager,
                 PowerModeManager& powerManager, std::function<void()> openSettings);

/// A fan's line, such as "Left Fan: 2150 RPM (35%)".
QString fanLine(const FanTelemetry& fan);

}  // namespace kestro
