#pragma once

#include "core/platform/clock.h"

#include <time.h>

#include <chrono>
#include <optional>

namespace kestro {

/// The kernel's clocks. The monotonic one stops while the machine sleeps, unlike the standard library's.
class MacClock final : public Clock {
public:
    WallTime wallNow() const override { return std::chrono::system_clock::now(); }
    MonotonicTime monotonicNow() const override {
        return MonotonicTime(std::chrono::nanoseconds(clock_gettime_nsec_np(CLOCK_UPTIME_RAW)));
    }
    std::optional<std::chrono::nanoseconds> sinceBoot() const override {
        return std::chrono::nanoseconds(clock_gettime_nsec_np(CLOCK_MONOTONIC_RAW));
    }
};

}  // namespace kestro
