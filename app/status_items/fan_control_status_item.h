#pragma once

#include "app/menus/cooling_menu.h"
#include "app/status_items/dedicated_status_item.h"

namespace kestro {

class FanControlManager;
class PowerModeManager;
class SMCReader;
class UserSettings;
struct Platform;

/// The optional item with the fan profile, and a menu with live fan speeds, profiles, presets and power modes.
class FanControlStatusItem final : public DedicatedStatusItem, private CoolingMenuActions {
public:
    FanControlStatusItem(const Platform& platform, StatusBar& statusBar, UserSettings& settings, SMCReader& smc,
                         FanControlManager& fanManager, PowerModeManager& powerManager);

protected:
    StatusContent content() const override;

    /// Takes a fresh reading of the fans.
    StatusMenu menu() override;

private:
    void selectFanProfile(FanProfile profile) override;
    void selectCurvePreset(CurvePreset preset) override;
    void selectPowerMode(SystemPowerMode mode) override;
    void openSettingsAction() override;

    const Platform& platform_;
    UserSettings& settings_;
    SMCReader& smc_;
    FanControlManager& fanManager_;
    PowerModeManager& powerManager_;
};

}  // namespace kestro
