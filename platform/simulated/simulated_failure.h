#pragma once

#include <cstdint>

namespace kestro {

/// Decides whether one platform call fails. By default it never does.
class SimulatedFailure {
public:
    /// Every call fails from now on.
    void always() { remaining_ = -1; }

    /// The next `count` calls fail, then none.
    void times(std::int64_t count) { remaining_ = count; }

    /// Asked once by each call.
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
