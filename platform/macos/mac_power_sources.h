#pragma once

#include "core/platform/power_sources.h"

namespace kestro {

/// The power sources of IOKit. Main thread.
class MacPowerSources final : public PowerSources {
public:
    std::optional<std::vector<std::optional<PowerSourceDescription>>> copyDescriptions() override;
};

}  // namespace kestro
