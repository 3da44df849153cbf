#pragma once

#include "core/platform/system_control.h"
#include "platform/simulated/simulated_clock.h"

#include <map>

namespace kestro {

/// Kernel state by name. A test makes a call fail by removing the name or the value.
class SimulatedSystemControl final : public SystemControl {
public:
    std::optional<std::int32_t> sysctlByNameInt32(std::string_view name) override;
    std::optional<std::string> sysctlByNameText(std::string_view name) override;
    std::optional<SwapUsage> swapUsage() override { return swap; }
    std::optional<TimeValue> bootTime() override { return boot; }

    std::map<std::string, std::int32_t, std::less<>> integers{
        {"hw.perflevel0.physicalcpu", 8},
        {"hw.perflevel1.physicalcpu", 4},
        {"kern.memorystatus_vm_pressure_level", 1},
    };
    std::map<std::string, std::string, std::less<>> texts{
        {"hw.perflevel0.name", "Performance"},
        {"hw.perflevel1.name", "Efficiency"},
        {"hw.model", "Mac14,9"},
        {"machdep.cpu.brand_string", "Apple M2 Pro"},
    };
    std::optional<SwapUsage> swap = SwapUsage{2'147'483'648, 644'245'094};

    /// 2 days, 4 hours and 41 minutes before the simulation starts.
    std::optional<TimeValue> boot = TimeValue{
        std::chrono::duration_cast<std::chrono::seconds>(SimulatedClock::startOfWall.time_since_epoch()).count() -
            (2 * 86400 + 4 * 3600 + 41 * 60),
        250'000};
};

}  // namespace kestro
