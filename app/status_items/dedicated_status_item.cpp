#include "app/status_items/dedicated_status_item.h"

#include "app/base/notification_names.h"
#include "core/platform/distributed_notifications.h"
#include "core/platform/platform.h"
#include "core/settings/user_settings.h"

namespace kestro {

DedicatedStatusItem::DedicatedStatusItem(const QString& identifier, const Platform& platform, StatusBar& statusBar,
                                         UserSettings& settings, const Setting<bool>& isShown)
    : identifier_(identifier),
      platform_(platform),
      statusBar_(statusBar),
      settings_(settings),
      isShown_(isShown),
      iconUpdate_(platform.runLoop, [this] { updateIcon(); }),
      visibilityUpdate_(platform.runLoop, [this] { followSetting(); }) {}

void DedicatedStatusItem::enable() {
    if (statusItem_) {
        return;
    }
    StatusItemHandlers handlers;
    handlers.buildMenu = [this] { return menu(); };
    statusItem_ = statusBar_.createItem(identifier_, std::move(handlers));
    updateIcon();
}

void DedicatedStatusItem::disable() {
    statusItem_.reset();
}

void DedicatedStatusItem::updateIcon() {
    if (statusItem_) {
        statusItem_->setContent(content());
    }
}

void DedicatedStatusItem::showMenu() {
    if (statusItem_) {
        statusItem_->openMenu();
    }
}

void DedicatedStatusItem::openSettings(SettingsTab tab) {
    settings_.selectedSettingsTab.set(tab);
    platform_.notifications.post(notification_names::showSettings);
}

void DedicatedStatusItem::observeSettings() {
    subscriptions_.push_back(isShown_.subscribe([this](bool) { visibilityUpdate_.request(); }));
    followSetting();
}

void DedicatedStatusItem::followSetting() {
    if (isShown_.get()) {
        enable();
    } else {
        disable();
    }
}

}  // namespace kestro
