#include "app/menus/cooling_menu.h"

#include "app/menus/menu_rows.h"
#include "ui/format/figure_text.h"

namespace kestro {

namespace {

StatusMenu fanLines(const std::vector<FanTelemetry>& fans) {
    if (fans.empty()) {
        return {StatusMenuEntry::header(QStringLiteral("Acoustics: 0 dB (Fanless Architecture)"))};
    }
    StatusMenu lines;
    for (const FanTelemetry& fan : fans) {
        lines.push_back(StatusMenuEntry::header(fanLine(fan)));
    }
    return lines;
}

}  // namespace

QString fanLine(const FanTelemetry& fan) {
    return QString::fromUtf8(fan.name) + QStringLiteral(": ") + wholeText(fan.currentRPM) +
           QStringLiteral(" RPM (") + wholeText(fan.percentage() * 100) + QStringLiteral("%)");
}

std::optional<CurvePreset> presetInEffect(FanProfile profile, std::optional<CurvePreset> activePreset) {
    return profile == FanProfile::custom ? activePreset : std::nullopt;
}

StatusMenu coolingMenu(const CoolingMenuState& state, CoolingMenuActions& actions) {
    StatusMenu menu{
        StatusMenuEntry::header(QStringLiteral("Cooling & Power Management")),
        StatusMenuEntry::separator(),
    };
    appendRows(menu, fanLines(state.fans));
    menu.push_back(StatusMenuEntry::separator());
    menu.push_back(StatusMenuEntry::header(QStringLiteral("Fan Performance Profile")));
    appendRows(menu, choiceRows<FanProfile>(
                         state.fanProfile, [&actions](FanProfile profile) { actions.selectFanProfile(profile); }));
    menu.push_back(menuSubmenu(QStringLiteral("Curve Presets"),
                               choiceRows<CurvePreset>(state.activePreset, [&actions](CurvePreset preset) {
                                   actions.selectCurvePreset(preset);
                               })));
    menu.push_back(StatusMenuEntry::separator());
    menu.push_back(StatusMenuEntry::header(QStringLiteral("Power Delivery Mode")));
    appendRows(menu, choiceRows<SystemPowerMode>(
                         state.powerMode, [&actions](SystemPowerMode mode) { actions.selectPowerMode(mode); }));
    menu.push_back(StatusMenuEntry::separator());
    menu.push_back(
        menuCommand(QStringLiteral("Cooling Settings..."), [&actions] { actions.openSettingsAction(); }));
    return menu;
}

}  // namespace kestro
