#include "app/status_items/main_status_item.h"

#include "core/cooling/fan_control_manager.h"
#include "core/engine/telemetry_engine.h"
#include "core/platform/platform.h"
#include "core/power/keep_awake_manager.h"
#include "core/power/power_mode_manager.h"
#include "core/readout/readout_sources.h"
#include "core/settings/user_settings.h"
#include "shell/readout_service.h"

#include <utility>

namespace kestro {

MainStatusItem::MainStatusItem(const Platform& platform, StatusBar& statusBar, const KestroServices& services,
                               StatusItemHandlers handlers)
    : services_(services),
      content_(services),
      item_(statusBar.createItem(readoutItemIdentifier, std::move(handlers))),
      textUpdate_(platform.runLoop, [this] { updateText(); }) {
    updateText();
    follow();
    updateReadoutSources();
}

void MainStatusItem::updateText() {
    if (content_.update()) {
        item_->setContent(content_.content());
    }
    // Figures and states that the text does not show may have changed.
    if (onUpdate_) {
        onUpdate_();
    }
}

QRect MainStatusItem::anchor() const {
    const QRect place = geometry();
    return place.isNull() ? lastAnchor_ : place;
}

void MainStatusItem::follow() {
    const auto retain = [this](Subscription subscription) { subscriptions_.push_back(std::move(subscription)); };
    const auto updateWith = [&](const auto&... values) {
        (retain(values.subscribe([this](const auto&) { textUpdate_.request(); })), ...);
    };
    const TelemetryEngine& engine = services_.engine;
    updateWith(engine.fans, engine.memory, engine.thermals, engine.cpu, engine.disk, engine.network, engine.power,
               services_.fanManager.currentProfile, services_.powerManager.currentMode,
               services_.keepAwake.isActive, services_.keepAwake.remainingSeconds);
    // The settings announce a change before the value changes; the update runs in a later turn.
    retain(services_.settings.subscribeWillChange([this] { textUpdate_.request(); }));
    retain(services_.settings.activeMenubarModules.subscribe([this](const auto&) { updateReadoutSources(); }));
}

void MainStatusItem::updateReadoutSources() {
    services_.engine.setReadoutSources(readoutSources(services_.settings.activeMenubarModules.get()));
}

}  // namespace kestro
