#include "app/readout_publication.h"

#include "app/status_items/main_status_item.h"
#include "core/base/text.h"
#include "core/engine/telemetry_engine.h"
#include "core/power/keep_awake_manager.h"
#include "core/power/power_mode_manager.h"
#include "core/readout/readout_inputs.h"
#include "core/settings/user_settings.h"

#include <utility>

namespace kestro {

ReadoutPublication::ReadoutPublication(ReadoutService& service, const KestroServices& services,
                                       MainStatusItem& item, ReadoutActions actions)
    : service_(service), services_(services), item_(item) {
    service_.publish({
        .readout = [this] { return readout(); },
        .figures = [this] { return figures(); },
        .togglePopover = std::move(actions.togglePopover),
        .showDashboard = std::move(actions.showDashboard),
        .showSettings = std::move(actions.showSettings),
        .toggleKeepAwake = [this] { services_.keepAwake.toggle(); },
        .buildMenu = std::move(actions.buildMenu),
    });
    item_.setUpdateHandler([this] { service_.readoutDidUpdate(); });
}

ReadoutPublication::~ReadoutPublication() {
    item_.setUpdateHandler({});
    service_.withdraw();
}

SharedReadout ReadoutPublication::readout() const {
    const StatusContent& content = item_.content();
    SharedReadout readout;
    readout.text = content.title.text.trimmed();
    readout.widestText = content.widestTitle.trimmed();
    readout.toolTip = content.toolTip;
    readout.hasSymbol = content.symbol.has_value();
    readout.isKeepAwakeActive = services_.keepAwake.isActive.get();
    if (const auto seconds = services_.keepAwake.remainingSeconds.get()) {
        readout.keepAwakeRemainingSeconds = wholeNumber(*seconds);
    }
    readout.powerMode = services_.powerManager.currentMode.get();
    return readout;
}

ReadoutFigures ReadoutPublication::figures() const {
    const ReadoutInputs inputs = readoutInputs(services_.engine, services_.settings, services_.fanManager,
                                               services_.keepAwake, services_.powerManager);
    return readoutFigures(services_.settings.activeMenubarModules.get(), inputs, services_.engine.measured());
}

}  // namespace kestro
