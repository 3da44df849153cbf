#pragma once

#include "core/readout/readout_composer.h"
#include "shell/status_bar.h"
#include "ui/kestro_services.h"

namespace kestro {

/// What the main item shows: the readout that the user composed and, for hosts without text, the memory and
/// processor loads to paint into the icon, unless the user wants the bare icon or selects no module. Kept
/// between updates, so that an update without changes allocates nothing. Main thread.
class MainStatusContent {
public:
    explicit MainStatusContent(const KestroServices& services) : services_(services) {}

    /// Composes everything from the current values. True if anything changed; always true the first time.
    bool update();

    const StatusContent& content() const { return content_; }

private:
    void takeReadout();

    const KestroServices services_;
    ReadoutComposer composer_;
    StatusContent content_;
};

}  // namespace kestro
