#pragma once

#include "core/model/fan_curve.h"
#include "core/model/keep_awake_types.h"
#include "core/model/system_power_mode.h"
#include "shell/status_bar.h"

#include <QString>

namespace kestro {

/// Actions of the main item's menu. Main thread.
class MainMenuActions {
public:
    virtual ~MainMenuActions() = default;

    virtual void togglePopoverAction() = 0;
    virtual void toggleDashboard() = 0;
    virtual void toggleFullScreenAction() = 0;
    virtual void openSettingsAction() = 0;
    virtual void togglePin() = 0;
    virtual void toggleKeepAwakeAction() = 0;
    virtual void selectKeepAwakeDuration(KeepAwakeDuration duration) = 0;
    virtual void selectFanProfile(FanProfile profile) = 0;
    virtual void selectCurvePreset(CurvePreset preset) = 0;
    virtual void selectPowerMode(SystemPowerMode mode) = 0;
    virtual void quit() = 0;
};

/// What the main item's menu shows.
struct MainMenuState {
    bool isPinned = false;
    bool isKeepAwakeActive = false;
    KeepAwakeDuration currentDuration = KeepAwakeDuration::indefinite;  ///< while off, the last one
    QString remainingTime;
    FanProfile fanProfile = FanProfile::normal;
    SystemPowerMode powerMode = SystemPowerMode::balanced;
};

/// The menu of the main item. `actions` outlives it.
StatusMenu mainMenu(const MainMenuState& state, MainMenuActions& actions);

}  // namespace kestro
