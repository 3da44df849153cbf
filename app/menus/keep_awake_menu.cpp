#include "app/menus/keep_awake_menu.h"

#include "app/menus/menu_rows.h"
#include "core/power/keep_awake_manager.h"
#include "core/power/power_status.h"

#include <optional>
#include <utility>

namespace kestro {

QString keepAwakeHeading(bool isActive, bool isHeld) {
    if (!isActive) {
        return QStringLiteral("Keep-Awake: Inactive");
    }
    return isHeld ? QStringLiteral("Keep-Awake: Active") : QStringLiteral("Keep-Awake: Not Held");
}

Menu keepAwakeMenu(KeepAwakeManager& keepAwake, const PowerStatus& status, std::function<void()> openSettings) {
    const bool isActive = keepAwake.isActive.get();
    QString heading = keepAwakeHeading(isActive, status.keepAwake.get().isHeld);
    if (isActive) {
        heading += QStringLiteral(" (%1)").arg(QString::fromStdString(keepAwake.formattedRemainingTime()));
    }
    // When off, this entry starts the default duration from the settings, which may be finite.
    const QString toggle =
        isActive ? QStringLiteral("Deactivate Keep-Awake") : QStringLiteral("Activate Indefinitely");
    const auto duration = isActive ? std::optional(keepAwake.currentDuration.get()) : std::nullopt;
    return {
        MenuEntry::header(heading),
        MenuEntry::separator(),
        MenuEntry::command(toggle, [&keepAwake] { keepAwake.toggle(); }),
        MenuEntry::separator(),
        MenuEntry::opening(QStringLiteral("Timed Session"),
                           choiceRows<KeepAwakeDuration>(
                               duration, [&keepAwake](KeepAwakeDuration chosen) { keepAwake.activate(chosen); })),
        MenuEntry::opening(QStringLiteral("Sleep Prevention Mode"),
                           choiceRows<KeepAwakeTarget>(
                               keepAwake.targetMode.get(),
                               [&keepAwake](KeepAwakeTarget target) { keepAwake.setTargetMode(target); })),
        MenuEntry::separator(),
        MenuEntry::command(QStringLiteral("Keep-Awake Settings..."), std::move(openSettings)),
    };
}

}  // namespace kestro
