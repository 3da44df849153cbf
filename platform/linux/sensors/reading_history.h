#pragma once

#include "core/platform/clock.h"

#include <cstdint>
#include <optional>

namespace kestro {

/// What the readings of one temperature sensor have been so far, to recognise inputs that measure nothing. Degrees
/// Celsius; ignores readings that no machine has. One thread at a time.
class ReadingHistory {
public:
    void note(double value, MonotonicTime now);

    /// Whether there was a plausible reading.
    bool isMeasuring() const { return count_ > 0; }

    /// Whether two readings differed.
    bool hasChanged() const { return lowest_ < highest_; }

    /// Difference of the highest and the lowest reading.
    double span() const { return highest_ - lowest_; }

    /// Whether firmware seems to report a constant: the readings have been the same for minutes, or they have not
    /// changed yet and are a whole number of kelvins.
    bool seemsConstant(MonotonicTime now) const;

private:
    std::uint32_t count_ = 0;
    MonotonicTime begun_{};
    double lowest_ = 0;
    double highest_ = 0;
};

}  // namespace kestro
