#include "app/status_items/main_status_content.h"

#include "core/engine/telemetry_engine.h"
#include "core/readout/menubar_readout.h"
#include "core/readout/readout_inputs.h"
#include "core/settings/user_settings.h"

#include <algorithm>

namespace kestro {

namespace {

/// A load that is not measured while only the status bar shows would be a picture of the past.
bool isProcessorLoadCurrent(const KestroServices& services) {
    return services.engine.isUIActive.get() || services.engine.readsLoadWhileIdle();
}

int wholePercent(double percent) {
    return percent > 0 ? static_cast<int>(std::min(percent, 100.0)) : 0;
}

/// The figures stand in for a text: a readout without any is nothing but its symbol.
std::optional<StatusGlance> glance(const KestroServices& services, const ReadoutInputs& inputs,
                                   const Readout& readout) {
    if (readout.title.empty() || inputs.memory == nullptr) {
        return std::nullopt;
    }
    StatusGlance loads;
    loads.upperPercent = wholePercent(inputs.memory->usedPercentage());
    if (inputs.cpu != nullptr && isProcessorLoadCurrent(services)) {
        loads.lowerPercent = wholePercent(inputs.cpu->totalUsage);
    }
    return loads;
}

}  // namespace

StatusContent mainStatusContent(const KestroServices& services) {
    const ReadoutLayout layout = ReadoutLayout::of(services.settings);
    const ReadoutInputs inputs = readoutInputs(services.engine, services.settings, services.fanManager,
                                               services.keepAwake, services.powerManager);
    const Readout readout = composeReadout(layout, inputs);
    StatusContent content;
    if (readout.symbol) {
        content.symbol = {QString::fromUtf8(readout.symbol->name),
                          QString::fromUtf8(readout.symbol->accessibilityDescription), readout.symbol->pointSize};
    }
    content.title = {QString::fromStdString(readout.title), 12, 500, StatusTitleColor::label};
    content.widestTitle = QString::fromStdString(widestReadout(layout, inputs).title);
    content.toolTip = QString::fromStdString(readoutToolTip(readout));
    content.glance = glance(services, inputs, readout);
    return content;
}

}  // namespace kestro
