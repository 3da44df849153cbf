#pragma once

#include "core/platform/clock.h"

namespace kestro {

/// All clocks, stopped until a caller advances them.
class SimulatedClock final : public Clock {
public:
    /// A Thursday morning in June 2025, 09:41 UTC.
    static constexpr WallTime startOfWall{std::chrono::seconds(1749721260)};

    WallTime wallNow() const override { return wall_; }
    MonotonicTime monotonicNow() const override { return monotonic_; }

    std::optional<std::chrono::nanoseconds> sinceBoot() const override {
        return uptimeAtStart ? std::optional(*uptimeAtStart + elapsed()) : std::nullopt;
    }

    /// Time since construction.
    std::chrono::nanoseconds elapsed() const { return monotonic_ - MonotonicTime{std::chrono::hours(1)}; }

    /// Advances all clocks; fires nothing.
    void turn(std::chrono::nanoseconds duration) {
        monotonic_ += duration;
        wall_ += std::chrono::duration_cast<WallTime::duration>(duration);
    }

    /// Simulates the user or the network setting the wall clock; monotonic time is unaffected.
    void setWall(WallTime wall) { wall_ = wall; }

    std::optional<std::chrono::nanoseconds> uptimeAtStart;  ///< nullopt: there is no boot clock

private:
    WallTime wall_ = startOfWall;
    MonotonicTime monotonic_{std::chrono::hours(1)};
};

}  // namespace kestro
