#pragma once

#include "core/engine/telemetry_sources.h"
#include "core/model/menubar_enumerations.h"

#include <span>

namespace kestro {

/// The sources whose figures these modules show. Pure; any thread.
TelemetrySources readoutSources(std::span<const MenubarModuleType> modules);

}  // namespace kestro
