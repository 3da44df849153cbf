#pragma once

#include "core/base/lifetime.h"

#include <array>
#include <cstdint>
#include <functional>
#include <memory>

namespace kestro {

class PowerEventSource;
class RunLoopTimer;
struct Platform;

/// Samples power every 30 s, and whenever the system announces a change, for as long as there is a reason to. Main
/// thread.
class PowerWatch {
public:
    enum class Reason : std::uint8_t {
        cutOff,   ///< keep-awake ends at a low battery
        readout,  ///< the readout shows the battery
    };

    /// `sample` is never called inside `setReason`.
    PowerWatch(const Platform& platform, std::function<void()> sample);
    ~PowerWatch();

    /// Initially there is none. Each new reason also takes one sample in the next turn of the main queue.
    void setReason(Reason reason, bool exists);

private:
    void postSample();

    const Platform& platform_;
    const std::function<void()> sample_;
    std::array<bool, 2> reasons_{};
    std::unique_ptr<RunLoopTimer> timer_;  // present while there is a reason
    std::unique_ptr<PowerEventSource> events_;
    bool isPosted_ = false;
    Lifetime lifetime_;
};

}  // namespace kestro
