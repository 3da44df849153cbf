#pragma once

#include <cstdint>

namespace kestro {

/// Decides whether a platform call fails; by default it never does.
class SimulatedFailure {
public:
    /// Fails every call from now on.
    void always() { remaining_ = -1; }

    /// Fails the next `count` calls, then none.
    void times(std::int64_t count) { remaining_ = count; }

    /// Queried once per call.
    bool strikes() {
        if (remaining_ > 0) {
            --remaining_;
            return true;
        }
        return remaining_ < 0;
    }

private:
    std::int64_t remaining_ = 0;
};

}  // namespace kestro
