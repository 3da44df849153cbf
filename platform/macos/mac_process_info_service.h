#pragma once

#include "core/platform/process_info_service.h"

#include <optional>

namespace kestro {

/// The machine's memory and system version from sysctl(3), and the thermal pressure that notify(3) publishes. Main
/// thread.
class MacProcessInfoService final : public ProcessInfoService {
public:
    MacProcessInfoService();
    ~MacProcessInfoService() override;
    MacProcessInfoService(const MacProcessInfoService&) = delete;
    MacProcessInfoService& operator=(const MacProcessInfoService&) = delete;

    /// 0: unknown.
    std::uint64_t physicalMemory() override;

    /// 0 while unknown.
    std::int64_t thermalState() override;

    /// Numbers that are unknown are 0.
    OperatingSystemVersion operatingSystemVersion() override;

private:
    std::optional<int> thermalPressure_;  ///< a registration; nullopt: it failed
};

}  // namespace kestro
