#pragma once

#include "core/platform/clock.h"

#include <ctime>

namespace kestro {

/// The kernel's clocks. The monotonic one stops while the machine sleeps; CLOCK_BOOTTIME does not.
class LinuxClock final : public Clock {
public:
    WallTime wallNow() const override { return std::chrono::system_clock::now(); }
    MonotonicTime monotonicNow() const override { return std::chrono::steady_clock::now(); }
    std::optional<std::chrono::nanoseconds> sinceBoot() const override {
        timespec time{};
        if (::clock_gettime(CLOCK_BOOTTIME, &time) != 0) {
            return std::nullopt;
        }
        return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
    }
};

}  // namespace kestro
