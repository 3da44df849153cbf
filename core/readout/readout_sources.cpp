#include "core/readout/readout_sources.h"

#include <optional>

namespace kestro {

namespace {

std::optional<TelemetrySource> sourceOf(MenubarModuleType module) {
    switch (module) {
        case MenubarModuleType::memory:
            return TelemetrySource::memory;
        case MenubarModuleType::cpuUsage:
        case MenubarModuleType::cpuClusters:
            return TelemetrySource::cpu;
        case MenubarModuleType::thermal:
            return TelemetrySource::thermals;
        case MenubarModuleType::fanSpeed:
            return TelemetrySource::fans;
        case MenubarModuleType::network:
            return TelemetrySource::network;
        case MenubarModuleType::battery:
            return TelemetrySource::power;
        case MenubarModuleType::diskSpace:
            return TelemetrySource::disk;
        case MenubarModuleType::appIcon:
        case MenubarModuleType::fanProfile:
        case MenubarModuleType::powerMode:
        case MenubarModuleType::keepAwake:
            return std::nullopt;
    }
    return std::nullopt;
}

}  // namespace

TelemetrySources readoutSources(std::span<const MenubarModuleType> modules) {
    TelemetrySources sources;
    for (const MenubarModuleType module : modules) {
        if (const auto source = sourceOf(module)) {
            sources.insert(*source);
        }
    }
    return sources;
}

}  // namespace kestro
