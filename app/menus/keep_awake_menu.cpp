#include "app/menus/keep_awake_menu.h"

#include "app/menus/menu_rows.h"

namespace kestro {

StatusMenu keepAwakeMenu(const KeepAwakeMenuState& state, KeepAwakeMenuActions& actions) {
    const bool isActive = state.activeDuration.has_value();
    const QString status = isActive
                               ? QStringLiteral("Keep-Awake: Active (") + state.remainingTime + QLatin1Char(')')
                               : QStringLiteral("Keep-Awake: Inactive");
    // When off, this entry starts the default duration from the settings, which may be finite.
    const QString toggle =
        isActive ? QStringLiteral("Deactivate Keep-Awake") : QStringLiteral("Activate Indefinitely");
    return {
        StatusMenuEntry::header(status),
        StatusMenuEntry::separator(),
        menuCommand(toggle, [&actions] { actions.toggleAction(); }),
        StatusMenuEntry::separator(),
        menuSubmenu(QStringLiteral("Timed Session"),
                    choiceRows<KeepAwakeDuration>(
                        state.activeDuration,
                        [&actions](KeepAwakeDuration duration) { actions.selectDuration(duration); })),
        menuSubmenu(QStringLiteral("Sleep Prevention Mode"),
                    choiceRows<KeepAwakeTarget>(
                        state.targetMode, [&actions](KeepAwakeTarget target) { actions.selectTarget(target); })),
        StatusMenuEntry::separator(),
        menuCommand(QStringLiteral("Keep-Awake Settings..."), [&actions] { actions.openSettingsAction(); }),
    };
}

}  // namespace kestro
