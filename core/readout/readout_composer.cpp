#include "core/readout/readout_composer.h"

#include <algorithm>
#include <utility>

namespace kestro {

bool ReadoutComposer::compose(const ReadoutLayout& layout, const ReadoutInputs& inputs) {
    const bool isWidestNew = composeWidest(layout, WidestTextInputs::of(inputs));
    composeReadout(layout, inputs, spare_);
    std::swap(readout_, spare_);
    return isWidestNew || readout_ != spare_;
}

bool ReadoutComposer::composeWidest(const ReadoutLayout& layout, const WidestTextInputs& inputs) {
    if (widestInputs_ == inputs && delimiter_ == layout.delimiter && iconStyle_ == layout.iconStyle &&
        std::ranges::equal(modules_, layout.modules)) {
        return false;
    }
    const bool isFirst = !widestInputs_;
    modules_.assign(layout.modules.begin(), layout.modules.end());
    delimiter_ = layout.delimiter;
    iconStyle_ = layout.iconStyle;
    widestInputs_ = inputs;
    const Readout before = std::exchange(widest_, widestReadout(layout, inputs));
    return isFirst || widest_ != before;
}

}  // namespace kestro
