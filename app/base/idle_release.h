#pragma once

#include "core/platform/clock.h"
#include "core/platform/run_loop.h"

#include <chrono>
#include <functional>
#include <memory>
#include <utility>

namespace kestro {

/// Calls `release` once when the user interface has been out of sight for ten seconds: what a window has used is
/// given back, but not between two looks at it. Main thread.
class IdleRelease {
public:
    static constexpr std::chrono::seconds delay{10};

    /// Both references outlive it.
    IdleRelease(RunLoop& runLoop, const Clock& clock, std::function<void()> release)
        : runLoop_(runLoop), clock_(clock), release_(std::move(release)) {}

    /// Whether a part of the user interface is visible.
    void setActive(bool isActive) {
        if (std::exchange(isActive_, isActive) == isActive) {
            return;
        }
        timer_.reset();
        if (!isActive) {
            inactiveSince_ = clock_.monotonicNow();
            timer_ = runLoop_.scheduleRepeating(checkInterval, [this] { check(); });
        }
    }

private:
    // Shares its wake-ups with other timers.
    static constexpr std::chrono::seconds checkInterval{5};

    void check() {
        if (clock_.monotonicNow() - inactiveSince_ >= delay) {
            timer_.reset();
            release_();
        }
    }

    RunLoop& runLoop_;
    const Clock& clock_;
    const std::function<void()> release_;
    MonotonicTime inactiveSince_;
    bool isActive_ = false;
    std::unique_ptr<RunLoopTimer> timer_;
};

}  // namespace kestro
