#include "app/menus/cooling_menu.h"

#include "app/menus/menu_rows.h"
#include "core/cooling/fan_control_manager.h"
#include "core/power/power_mode_manager.h"
#include "ui/format/figure_text.h"

#include <optional>
#include <utility>

namespace kestro {

namespace {

Menu fanLines(const std::vector<FanTelemetry>& fans) {
    if (fans.empty()) {
        return {MenuEntry::header(QStringLiteral("Acoustics: 0 dB (Fanless Architecture)"))};
    }
    Menu lines;
    for (const FanTelemetry& fan : fans) {
        lines.push_back(MenuEntry::header(fanLine(fan)));
    }
    return lines;
}

}  // namespace

QString fanLine(const FanTelemetry& fan) {
    return QString::fromUtf8(fan.name) + QStringLiteral(": ") + wholeText(fan.currentRPM) +
           QStringLiteral(" RPM (") + wholeText(fan.percentage() * 100) + QStringLiteral("%)");
}

Menu coolingMenu(const std::vector<FanTelemetry>& fans, FanControlManager& fanManager,
                 PowerModeManager& powerManager, std::function<void()> openSettings) {
    const FanProfile profile = fanManager.currentProfile.get();
    // A preset is in effect only while the curves drive the fans.
    const auto preset = profile == FanProfile::custom ? fanManager.activePreset.get() : std::nullopt;
    Menu menu{
        MenuEntry::header(QStringLiteral("Cooling & Power Management")),
        MenuEntry::separator(),
    };
    appendRows(menu, fanLines(fans));
    menu.push_back(MenuEntry::separator());
    menu.push_back(MenuEntry::header(QStringLiteral("Fan Performance Profile")));
    appendRows(menu, choiceRows<FanProfile>(profile,
                                            [&fanManager](FanProfile chosen) { fanManager.setProfile(chosen); }));
    menu.push_back(MenuEntry::opening(
        QStringLiteral("Curve Presets"),
        choiceRows<CurvePreset>(preset, [&fanManager](CurvePreset chosen) { fanManager.applyPreset(chosen); })));
    menu.push_back(MenuEntry::separator());
    menu.push_back(MenuEntry::header(QStringLiteral("Power Delivery Mode")));
    appendRows(menu,
               choiceRows<SystemPowerMode>(powerManager.currentMode.get(), [&powerManager](SystemPowerMode mode) {
                   powerManager.setPowerMode(mode);
               }));
    menu.push_back(MenuEntry::separator());
    menu.push_back(MenuEntry::command(QStringLiteral("Cooling Settings..."), std::move(openSettings)));
    return menu;
}

}  // namespace kestro
