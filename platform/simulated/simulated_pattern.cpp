#include "platform/simulated/simulated_pattern.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace kestro {

namespace {

/// Phases a golden angle apart never coincide.
double phase(std::uint32_t channel) {
    return channel * 2.399963;
}

}  // namespace

double SimulatedPattern::seconds() const {
    return frozenAt_ >= 0 ? frozenAt_ : std::chrono::duration<double>(clock_.elapsed()).count();
}

void SimulatedPattern::freeze() {
    frozenAt_ = seconds();
}

double SimulatedPattern::waveAt(std::uint32_t channel, double seconds) const {
    if (frozenAt_ >= 0) {
        return 0;
    }
    const double turns = 2 * std::numbers::pi * seconds;
    return 0.6 * std::sin(turns / (11 + channel % 5 * 3) + phase(channel)) +
           0.4 * std::sin(turns / (29 + channel % 3 * 7) + 2 * phase(channel));
}

double SimulatedPattern::burstAt(std::uint32_t channel, double seconds) const {
    if (frozenAt_ >= 0) {
        return 0;
    }
    const double period = 23 + channel % 4 * 8;
    return std::pow(std::max(0.0, std::sin(2 * std::numbers::pi * seconds / period + phase(channel))), 12);
}

}  // namespace kestro
