#pragma once

#include "app/status_items/dedicated_status_item.h"

namespace kestro {

class FanControlManager;
class PowerModeManager;
class SMCReader;
class UserSettings;
struct Platform;

/// The optional item with the fan profile, and a menu with live fan speeds, profiles, presets and power modes.
class FanControlStatusItem final : public DedicatedStatusItem {
public:
    FanControlStatusItem(const Platform& platform, StatusBar& statusBar, UserSettings& settings, SMCReader& smc,
                         FanControlManager& fanManager, PowerModeManager& powerManager);

protected:
    StatusContent content() const override;

    /// Takes a fresh reading of the fans.
    Menu menu() override;

private:
    SMCReader& smc_;
    FanControlManager& fanManager_;
    PowerModeManager& powerManager_;
};

}  // namespace kestro
