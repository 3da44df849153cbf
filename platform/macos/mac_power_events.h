#pragma once

#include "core/platform/power_events.h"

namespace kestro {

/// The notifications of IOKit's power sources, which arrive while the main run loop runs. Main thread.
class MacPowerEvents final : public PowerEvents {
public:
    std::unique_ptr<PowerEventSource> watch(std::function<void()> handler) override;
};

}  // namespace kestro
