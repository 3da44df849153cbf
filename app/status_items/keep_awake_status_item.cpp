#include "app/status_items/keep_awake_status_item.h"

#include "app/menus/keep_awake_menu.h"
#include "core/power/keep_awake_manager.h"
#include "core/power/power_status.h"
#include "core/settings/user_settings.h"
#include "ui/format/record_text.h"

namespace kestro {

KeepAwakeStatusItem::KeepAwakeStatusItem(const Platform& platform, StatusBar& statusBar, UserSettings& settings,
                                         KeepAwakeManager& manager, const PowerStatus& status)
    : DedicatedStatusItem(QStringLiteral("kestro-keep-awake"), platform, statusBar, settings,
                          settings.showDedicatedKeepAwakeItem),
      manager_(manager),
      status_(status) {
    follow(manager_.isActive);
    follow(manager_.remainingSeconds);
    follow(status_.keepAwake);
    observeSettings();
}

StatusContent KeepAwakeStatusItem::content() const {
    const bool isActive = manager_.isActive.get();
    const KeepAwakeStatus& status = status_.keepAwake.get();
    StatusContent content;
    content.symbol = {
        isActive && status.isHeld ? QStringLiteral("cup.and.saucer.fill") : QStringLiteral("cup.and.saucer"),
        QStringLiteral("Keep Awake"), 13};
    content.title = {QString(), 11, 600, StatusTitleColor::orange};
    content.toolTip = keepAwakeHeading(isActive, status.isHeld);
    content.help = QString::fromStdString(status.note);
    if (const QString minutes = keepAwakeMinutes(manager_); !minutes.isEmpty()) {
        content.title.text = QLatin1Char(' ') + minutes;
        content.widestTitle = QStringLiteral(" 240m");
        content.toolTip += QStringLiteral(" (") + minutes + QLatin1Char(')');
    }
    return content;
}

Menu KeepAwakeStatusItem::menu() {
    return keepAwakeMenu(manager_, status_, [this] { openSettings(SettingsTab::keepAwake); });
}

}  // namespace kestro
