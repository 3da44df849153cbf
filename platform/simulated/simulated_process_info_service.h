#pragma once

#include "core/platform/process_info_service.h"

namespace kestro {

/// 32 GB of memory, nominal thermal state, and a system name and version.
class SimulatedProcessInfoService final : public ProcessInfoService {
public:
    std::uint64_t physicalMemory() override { return memory; }
    std::int64_t thermalState() override { return state; }
    OperatingSystemVersion operatingSystemVersion() override { return version; }

    std::uint64_t memory = 34'359'738'368;
    std::int64_t state = 0;
    OperatingSystemVersion version{"macOS", 14, 5, 0};
};

}  // namespace kestro
