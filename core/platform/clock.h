#pragma once

#include <chrono>
#include <optional>

namespace kestro {

/// Wall-clock time: follows the user's clock and may jump.
using WallTime = std::chrono::system_clock::time_point;

/// Time that never goes backwards; its origin is arbitrary.
using MonotonicTime = std::chrono::steady_clock::time_point;

/// The clocks. Any thread; never fails.
class Clock {
public:
    virtual ~Clock() = default;

    virtual WallTime wallNow() const = 0;
    virtual MonotonicTime monotonicNow() const = 0;

    /// Time since boot, including time asleep; unaffected by setting the wall clock. nullopt: this system has no
    /// such clock.
    virtual std::optional<std::chrono::nanoseconds> sinceBoot() const { return std::nullopt; }
};

}  // namespace kestro
