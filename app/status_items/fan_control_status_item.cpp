#include "app/status_items/fan_control_status_item.h"

#include "app/menus/cooling_menu.h"
#include "core/cooling/fan_control_manager.h"
#include "core/power/power_mode_manager.h"
#include "core/settings/user_settings.h"
#include "core/telemetry/smc_reader.h"

#include <algorithm>

namespace kestro {

namespace {

QString profileTitle(FanProfile profile) {
    return QLatin1Char(' ') + QString::fromUtf8(rawValue(profile)).toUpper();
}

QString widestProfileTitle() {
    const auto profiles = allCases<FanProfile>();
    return profileTitle(
        *std::ranges::max_element(profiles, {}, [](FanProfile profile) { return rawValue(profile).size(); }));
}

}  // namespace

FanControlStatusItem::FanControlStatusItem(const Platform& platform, StatusBar& statusBar, UserSettings& settings,
                                           SMCReader& smc, FanControlManager& fanManager,
                                           PowerModeManager& powerManager)
    : DedicatedStatusItem(QStringLiteral("kestro-cooling"), platform, statusBar, settings,
                          settings.showDedicatedFanItem),
      smc_(smc),
      fanManager_(fanManager),
      powerManager_(powerManager) {
    follow(fanManager_.currentProfile);
    follow(powerManager_.currentMode);
    observeSettings();
}

StatusContent FanControlStatusItem::content() const {
    const FanProfile profile = fanManager_.currentProfile.get();
    StatusContent content;
    content.symbol = {QStringLiteral("fanblades"), QStringLiteral("Cooling & Power"), 13};
    content.title = {profileTitle(profile), 10, 700, StatusTitleColor::secondaryLabel};
    content.widestTitle = widestProfileTitle();
    content.toolTip = QStringLiteral("Cooling & Power: ") + QString::fromUtf8(rawValue(profile));
    return content;
}

Menu FanControlStatusItem::menu() {
    return coolingMenu(smc_.readFans(), fanManager_, powerManager_,
                       [this] { openSettings(SettingsTab::cooling); });
}

}  // namespace kestro
