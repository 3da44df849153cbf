#include "platform/linux/sensors/reading_history.h"

#include <algorithm>
#include <chrono>
#include <cmath>

namespace kestro {
namespace {

// The range that the thermal reader accepts.
constexpr double coldest = 10;
constexpr double hottest = 125;

constexpr std::chrono::minutes longestPlateau{10};
constexpr std::uint32_t fewestReadings = 100;

/// Firmware counts in tenths of a kelvin. Sensors measure whole degrees Celsius, and constants are written as
/// whole kelvins: 290 K is 16.8 degrees Celsius, or 16.9 where the critical trip point implies that the firmware
/// adds 273.1 (drivers/acpi/thermal.c).
bool isWholeKelvin(double celsius) {
    const auto tenths = std::lround(celsius * 10);
    return (tenths + 2732) % 10 == 0 || (tenths + 2731) % 10 == 0;
}

}  // namespace

void ReadingHistory::note(double value, MonotonicTime now) {
    if (!(value > coldest && value < hottest)) {
        return;
    }
    if (count_ == 0) {
        begun_ = now;
        lowest_ = value;
        highest_ = value;
    }
    lowest_ = std::min(lowest_, value);
    highest_ = std::max(highest_, value);
    count_ += count_ < fewestReadings ? 1 : 0;
}

bool ReadingHistory::seemsConstant(MonotonicTime now) const {
    if (count_ == 0 || hasChanged()) {
        return false;
    }
    return isWholeKelvin(lowest_) || (count_ == fewestReadings && now - begun_ >= longestPlateau);
}

}  // namespace kestro
