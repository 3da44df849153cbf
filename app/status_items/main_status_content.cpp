#include "app/status_items/main_status_content.h"

#include "core/base/text.h"
#include "core/engine/telemetry_engine.h"
#include "core/readout/readout_inputs.h"
#include "core/settings/user_settings.h"

#include <algorithm>
#include <cstdint>
#include <utility>

namespace kestro {

namespace {

int wholePercent(double percent) {
    return static_cast<int>(std::clamp<std::int64_t>(wholeNumber(percent), 0, 100));
}

/// The figures replace a text: a readout without text keeps its plain symbol.
std::optional<StatusGlance> glance(const KestroServices& services, const ReadoutInputs& inputs,
                                   const Readout& readout) {
    if (readout.title.empty() || inputs.memory == nullptr) {
        return std::nullopt;
    }
    StatusGlance loads;
    loads.upperPercent = wholePercent(inputs.memory->usedPercentage());
    // Otherwise the load is read only while a window is visible, and its row would come and go with the windows.
    if (inputs.cpu != nullptr && services.engine.readsLoadWhileIdle()) {
        loads.lowerPercent = wholePercent(inputs.cpu->totalUsage);
    }
    return loads;
}

}  // namespace

bool MainStatusContent::update() {
    const ReadoutInputs inputs = readoutInputs(services_.engine, services_.settings, services_.fanManager,
                                               services_.keepAwake, services_.powerManager);
    const bool isReadoutNew = composer_.compose(ReadoutLayout::of(services_.settings), inputs);
    if (isReadoutNew) {
        takeReadout();
    }
    const auto before = std::exchange(content_.glance, glance(services_, inputs, composer_.readout()));
    return isReadoutNew || content_.glance != before;
}

void MainStatusContent::takeReadout() {
    const Readout& readout = composer_.readout();
    content_.symbol.reset();
    if (readout.symbol) {
        content_.symbol = {QString::fromUtf8(readout.symbol->name),
                           QString::fromUtf8(readout.symbol->accessibilityDescription), readout.symbol->pointSize};
    }
    content_.title = {QString::fromStdString(readout.title), 12, 500, StatusTitleColor::label};
    content_.widestTitle = QString::fromStdString(composer_.widest().title);
    content_.toolTip = QString::fromStdString(readoutToolTip(readout));
    content_.spokenText = QString::fromStdString(readout.spokenText);
}

}  // namespace kestro
