#include "app/menus/keep_awake_menu.h"

#include "app/menus/menu_rows.h"
#include "core/power/keep_awake_manager.h"

#include <optional>
#include <utility>

namespace kestro {

Menu keepAwakeMenu(KeepAwakeManager& keepAwake, std::function<void()> openSettings) {
    const bool isActive = keepAwake.isActive.get();
    const QString status = isActive ? QStringLiteral("Keep-Awake: Active (%1)")
                                          .arg(QString::fromStdString(keepAwake.formattedRemainingTime()))
                                    : QStringLiteral("Keep-Awake: Inactive");
    // When off, this entry starts the default duration from the settings, which may be finite.
    const QString toggle =
        isActive ? QStringLiteral("Deactivate Keep-Awake") : QStringLiteral("Activate Indefinitely");
    const auto duration = isActive ? std::optional(keepAwake.currentDuration.get()) : std::nullopt;
    return {
        MenuEntry::header(status),
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
