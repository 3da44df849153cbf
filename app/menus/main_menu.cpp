#include "app/menus/main_menu.h"

#include "app/menus/menu_rows.h"
#include "app/menus/shortcuts.h"

#include <optional>
#include <utility>

namespace kestro {

namespace {

StatusMenuEntry keepAwakeEntry(const MainMenuState& state, MainMenuActions& actions) {
    const QString title = state.isKeepAwakeActive
                              ? QStringLiteral("Deactivate Keep-Awake (") + state.remainingTime + QLatin1Char(')')
                              : QStringLiteral("Activate Indefinitely");
    return menuCommand(title, [&actions] { actions.toggleKeepAwakeAction(); });
}

StatusMenu fanRows(const MainMenuState& state, MainMenuActions& actions) {
    StatusMenu rows = choiceRows<FanProfile>(
        state.fanProfile, [&actions](FanProfile profile) { actions.selectFanProfile(profile); });
    rows.push_back(StatusMenuEntry::separator());
    rows.push_back(StatusMenuEntry::header(QStringLiteral("Curve Presets")));
    appendRows(rows, choiceRows<CurvePreset>(
                         std::nullopt, [&actions](CurvePreset preset) { actions.selectCurvePreset(preset); }));
    return rows;
}

}  // namespace

StatusMenu mainMenu(const MainMenuState& state, MainMenuActions& actions) {
    StatusMenu menu{
        StatusMenuEntry::header(QStringLiteral("Kestro Telemetry")),
        StatusMenuEntry::separator(),
        menuCommand(QStringLiteral("Quick Glance Popover"), [&actions] { actions.togglePopoverAction(); }),
        menuCommand(
            QStringLiteral("Full Studio Dashboard"), [&actions] { actions.toggleDashboard(); },
            shortcuts::toggleDashboard),
        menuCommand(
            QStringLiteral("Toggle Full Screen"), [&actions] { actions.toggleFullScreenAction(); },
            shortcuts::toggleFullScreen),
        menuCommand(
            QStringLiteral("Settings..."), [&actions] { actions.openSettingsAction(); }, shortcuts::openSettings),
        menuCommand(
            state.isPinned ? QStringLiteral("Unpin Window") : QStringLiteral("Pin Window on Top"),
            [&actions] { actions.togglePin(); }, shortcuts::togglePin),
        StatusMenuEntry::separator(),
        keepAwakeEntry(state, actions),
        StatusMenuEntry::separator(),
    };
    menu.push_back(
        menuSubmenu(QStringLiteral("Keep Awake"),
                    choiceRows<KeepAwakeDuration>(state.currentDuration, [&actions](KeepAwakeDuration duration) {
                        actions.selectKeepAwakeDuration(duration);
                    })));
    menu.push_back(menuSubmenu(QStringLiteral("Fan Performance"), fanRows(state, actions)));
    menu.push_back(menuSubmenu(QStringLiteral("Power Delivery Mode"),
                               choiceRows<SystemPowerMode>(state.powerMode, [&actions](SystemPowerMode mode) {
                                   actions.selectPowerMode(mode);
                               })));
    menu.push_back(menuCommand(
        QStringLiteral("Quit Kestro"), [&actions] { actions.quit(); }, shortcuts::quit));
    return menu;
}

}  // namespace kestro
