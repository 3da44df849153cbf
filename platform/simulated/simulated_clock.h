#pragma once

#include "core/platform/clock.h"

namespace kestro {

/// Both clocks, standing still until somebody turns them.
class SimulatedClock final : public Clock {
public:
    /// A Thursday morning in June 2025, 09:41 UTC.
    static constexpr WallTime startOfWall{std::chrono::seconds(1749721260)};

    WallTime wallNow() const override { return wall_; }
    MonotonicTime monotonicNow() const override { return monotonic_; }

    /// Time since the clock was made.
    std::chrono::nanoseconds elapsed() const { return monotonic_ - MonotonicTime{std::chrono::hours(1)}; }

    /// Turns both clocks; fires nothing.
    void turn(std::chrono::nanoseconds duration) {
        monotonic_ += duration;
        wall_ += std::chrono::duration_cast<WallTime::duration>(duration);
    }

    /// The user, or the network, sets the wall clock; monotonic time does not notice.
    void setWall(WallTime wall) { wall_ = wall; }

private:
    WallTime wall_ = startOfWall;
    MonotonicTime monotonic_{std::chrono::hours(1)};
};

}  // namespace kestro
