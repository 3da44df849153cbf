#pragma once

#include "core/readout/menubar_readout.h"

#include <optional>
#include <vector>

namespace kestro {

/// Maintains one readout and its widest form. Composing allocates nothing in steady state; the widest readout is
/// recomposed only when the layout or the machine has changed. Any one thread.
class ReadoutComposer {
public:
    /// Recomposes. Returns whether the readout or the widest one has changed; always true the first time.
    bool compose(const ReadoutLayout& layout, const ReadoutInputs& inputs);

    const Readout& readout() const { return readout_; }
    const Readout& widest() const { return widest_; }

private:
    bool composeWidest(const ReadoutLayout& layout, const WidestTextInputs& inputs);

    Readout readout_;
    Readout spare_;
    Readout widest_;

    // What the widest readout was composed from; no inputs: not composed yet.
    std::vector<MenubarModuleType> modules_;
    MenubarDelimiter delimiter_ = MenubarDelimiter::middleDot;
    MenubarIconStyle iconStyle_ = MenubarIconStyle::iconsAndText;
    std::optional<WidestTextInputs> widestInputs_;
};

}  // namespace kestro
