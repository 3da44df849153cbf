#include "app/status_items/dedicated_status_item.h"

#include "core/settings/user_settings.h"

namespace kestro {

DedicatedStatusItem::DedicatedStatusItem(const QString& identifier, StatusBar& statusBar, RunLoop& runLoop,
                                         const Setting<bool>& isShown)
    : identifier_(identifier),
      statusBar_(statusBar),
      isShown_(isShown),
      iconUpdate_(runLoop, [this] { updateIcon(); }),
      visibilityUpdate_(runLoop, [this] { followSetting(); }) {}

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
