#pragma once

#include "core/model/fan_curve.h"
#include "core/model/system_power_mode.h"
#include "core/telemetry/fan_telemetry.h"
#include "shell/status_bar.h"

#include <QString>

#include <optional>
#include <vector>

namespace kestro {

/// Actions of the cooling item's menu. Main thread.
class CoolingMenuActions {
public:
    virtual ~CoolingMenuActions() = default;

    virtual void selectFanProfile(FanProfile profile) = 0;
    virtual void selectCurvePreset(CurvePreset preset) = 0;
    virtual void selectPowerMode(SystemPowerMode mode) = 0;
    virtual void openSettingsAction() = 0;
};

/// What the cooling item's menu shows.
struct CoolingMenuState {
    std::vector<FanTelemetry> fans;
    FanProfile fanProfile = FanProfile::normal;
    std::optional<CurvePreset> activePreset;  ///< absent: none in effect
    SystemPowerMode powerMode = SystemPowerMode::balanced;
};

/// The menu of the cooling item. `actions` outlives it.
StatusMenu coolingMenu(const CoolingMenuState& state, CoolingMenuActions& actions);

/// A fan's line, such as "Left Fan: 2150 RPM (35%)".
QString fanLine(const FanTelemetry& fan);

/// The preset in effect: the active one while the curves drive the fans, otherwise none.
std::optional<CurvePreset> presetInEffect(FanProfile profile, std::optional<CurvePreset> activePreset);

}  // namespace kestro
