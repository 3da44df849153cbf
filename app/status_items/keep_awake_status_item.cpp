#include "app/status_items/keep_awake_status_item.h"

#include "app/menus/keep_awake_menu.h"
#include "core/power/keep_awake_manager.h"
#include "core/settings/user_settings.h"
#include "ui/format/record_text.h"

namespace kestro {

KeepAwakeStatusItem::KeepAwakeStatusItem(const Platform& platform, StatusBar& statusBar, UserSettings& settings,
                                         KeepAwakeManager& manager)
    : DedicatedStatusItem(QStringLiteral("kestro-keep-awake"), platform, statusBar, settings,
                          settings.showDedicatedKeepAwakeItem),
      manager_(manager) {
    follow(manager_.isActive);
    follow(manager_.remainingSeconds);
    observeSettings();
}

StatusContent KeepAwakeStatusItem::content() const {
    const bool isActive = manager_.isActive.get();
    StatusContent content;
    content.symbol = {isActive ? QStringLiteral("cup.and.saucer.fill") : QStringLiteral("cup.and.saucer"),
                      QStringLiteral("Keep Awake"), 13};
    content.title = {QString(), 11, 600, StatusTitleColor::orange};
    content.toolTip = isActive ? QStringLiteral("Keep-Awake: Active") : QStringLiteral("Keep-Awake: Inactive");
    if (const QString minutes = keepAwakeMinutes(manager_); !minutes.isEmpty()) {
        content.title.text = QLatin1Char(' ') + minutes;
        content.widestTitle = QStringLiteral(" 240m");
        content.toolTip += QStringLiteral(" (") + minutes + QLatin1Char(')');
    }
    return content;
}

Menu KeepAwakeStatusItem::menu() {
    return keepAwakeMenu(manager_, [this] { openSettings(SettingsTab::keepAwake); });
}

}  // namespace kestro
