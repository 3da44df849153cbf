#pragma once

#include "core/platform/clock.h"

namespace kestro {

/// The kernel's two clocks. The monotonic one stops while the machine sleeps.
class LinuxClock final : public Clock {
public:
    WallTime wallNow() const override { return std::chrono::system_clock::now(); }
    MonotonicTime monotonicNow() const override { return std::chrono::steady_clock::now(); }
};

}  // namespace kestro
