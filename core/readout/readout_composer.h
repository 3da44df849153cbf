#pragma once

#include "core/readout/menubar_readout.h"

#include <optional>
#include <vector>

namespace kestro {

/// Keeps one readout up to date, and beside it the widest one. A composition allocates nothing in steady state,
/// and the widest readout is composed only when the layout or the machine has changed. Any one thread.
class ReadoutComposer {
public:
    /// Composes anew. Whether the readout or the widest one differs from before; the first time always.
    bool compose(const ReadoutLayout& layout, const ReadoutInputs& inputs);

    const Readout& readout() const { return readout_; }
    const Readout& widest() const { return widest_; }

private:
    bool composeWidest(const ReadoutLayout& layout, const WidestTextInputs& inputs);

    Readout readout_;
    Readout spare_;
    Readout widest_;

    // What the widest readout was composed from; no inputs: it was not yet.
    std::vector<MenubarModuleType> modules_;
    MenubarDelimiter delimiter_ = MenubarDelimiter::middleDot;
    MenubarIconStyle iconStyle_ = MenubarIconStyle::iconsAndText;
    std::optional<WidestTextInputs> widestInputs_;
};

}  // namespace kestro
