#pragma once

#include <cstdint>

namespace kestro {

/// Decides whether a platform call fails; by default it never does.
class SimulatedFailure {
public:
    /// Fails every call from now on.
    void always() { set(-1, 0); }

    /// Fails the next `count` calls, then none.
    void times(std::int64_t count) { set(count, 0); }

    /// Fails about every second call, the same ones in every run with that seed.
    void sometimes(std::uint32_t seed) { set(0, seed | 1U); }

    /// Queried once per call.
    bool strikes() {
        if (random_ != 0) {
            // A xorshift generator, whose state is never 0.
            random_ ^= random_ << 13U;
            random_ ^= random_ >> 17U;
            random_ ^= random_ << 5U;
            return (random_ >> 16U & 1U) != 0;
        }
        if (remaining_ > 0) {
            --remaining_;
            return true;
        }
        return remaining_ < 0;
    }

private:
    void set(std::int64_t remaining, std::uint32_t random) {
        remaining_ = remaining;
        random_ = random;
    }

    std::int64_t remaining_ = 0;
    std::uint32_t random_ = 0;  // 0: not at random
};

}  // namespace kestro
