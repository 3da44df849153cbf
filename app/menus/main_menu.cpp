#include "app/menus/main_menu.h"

#include "app/menus/menu_rows.h"
#include "app/menus/shortcuts.h"
#include "core/cooling/fan_control_manager.h"
#include "core/power/keep_awake_manager.h"
#include "core/power/power_mode_manager.h"
#include "core/settings/user_settings.h"

namespace kestro {

namespace {

MenuEntry keepAwakeEntry(KeepAwakeManager& keepAwake) {
    const QString title = keepAwake.isActive.get()
                              ? QStringLiteral("Deactivate Keep-Awake (%1)")
                                    .arg(QString::fromStdString(keepAwake.formattedRemainingTime()))
                              : QStringLiteral("Activate Indefinitely");
    return MenuEntry::command(title, [&keepAwake] { keepAwake.toggle(); });
}

Menu fanRows(FanControlManager& fans) {
    Menu rows = choiceRows<FanProfile>(fans.currentProfile.get(),
                                       [&fans](FanProfile profile) { fans.setProfile(profile); });
    rows.push_back(MenuEntry::separator());
    rows.push_back(MenuEntry::header(QStringLiteral("Curve Presets")));
    // Shortcuts without a state here; the cooling menu marks the preset in effect.
    appendRows(rows,
               choiceRows<CurvePreset>(std::nullopt, [&fans](CurvePreset preset) { fans.applyPreset(preset); }));
    return rows;
}

}  // namespace

Menu mainMenu(const KestroServices& services, MenuCommands& commands) {
    KeepAwakeManager& keepAwake = services.keepAwake;
    PowerModeManager& power = services.powerManager;
    const QString pin =
        services.settings.isPinned.get() ? QStringLiteral("Unpin Window") : QStringLiteral("Pin Window on Top");
    return {
        MenuEntry::header(QStringLiteral("Kestro Telemetry")),
        MenuEntry::separator(),
        MenuEntry::command(QStringLiteral("Quick Glance Popover"), [&commands] { commands.togglePopover(); }),
        MenuEntry::command(
            QStringLiteral("Full Studio Dashboard"), [&commands] { commands.toggleDashboard(); },
            shortcuts::toggleDashboard),
        MenuEntry::command(
            QStringLiteral("Toggle Full Screen"), [&commands] { commands.toggleFullScreenAction(); },
            shortcuts::toggleFullScreen),
        MenuEntry::command(
            QStringLiteral("Settings..."), [&commands] { commands.showSettings(); }, shortcuts::openSettings),
        MenuEntry::command(
            pin, [&commands] { commands.togglePin(); }, shortcuts::togglePin),
        MenuEntry::separator(),
        keepAwakeEntry(keepAwake),
        MenuEntry::separator(),
        // While keep-awake is off, the check marks the last duration.
        MenuEntry::opening(QStringLiteral("Keep Awake"),
                           choiceRows<KeepAwakeDuration>(
                               keepAwake.currentDuration.get(),
                               [&keepAwake](KeepAwakeDuration duration) { keepAwake.activate(duration); })),
        MenuEntry::opening(QStringLiteral("Fan Performance"), fanRows(services.fanManager)),
        MenuEntry::opening(
            QStringLiteral("Power Delivery Mode"),
            choiceRows<SystemPowerMode>(power.currentMode.get(),
                                        [&power](SystemPowerMode mode) { power.setPowerMode(mode); })),
        MenuEntry::command(
            QStringLiteral("Quit Kestro"), [&commands] { commands.quit(); }, shortcuts::quit),
    };
}

}  // namespace kestro
