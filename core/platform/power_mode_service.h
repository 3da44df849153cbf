#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <optional>

namespace kestro {

/// Which power modes the system offers, and what became of the last switch. Modes are numbered as in the
/// power-management tool's `powermode`: 0 automatic, 1 low power, 2 high power.
struct PowerModeConditions {
    enum class Failure : std::uint8_t {
        noService,  ///< nothing on this machine can switch the mode, or not to this one
        denied,     ///< no consent of the administrator
        rejected,   ///< the service refused, or did not reply
        reverted,   ///< the service accepted, and yet the mode is another
    };
    struct FailedSwitch {
        int mode = 0;
        Failure reason{};
        friend bool operator==(const FailedSwitch&, const FailedSwitch&) = default;
    };

    std::array<bool, 3> isOffered{true, true, true};
    std::optional<FailedSwitch> failedSwitch;  ///< absent after a switch that happened, and before the first

    friend bool operator==(const PowerModeConditions&, const PowerModeConditions&) = default;
};

/// The system's view of the power modes, beside the tool's report. Main thread.
class PowerModeService {
public:
    virtual ~PowerModeService() = default;

    virtual PowerModeConditions conditions() const = 0;

    /// Called on the main thread when the conditions may have changed. One handler; an empty one removes it.
    virtual void setConditionsHandler(std::function<void()> handler) = 0;
};

}  // namespace kestro
