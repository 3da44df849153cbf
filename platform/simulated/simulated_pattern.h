#pragma once

#include "platform/simulated/simulated_clock.h"

#include <cstdint>

namespace kestro {

/// The fluctuation of the simulated machine: smooth, repeatable and a function of time alone. When frozen, every
/// fluctuation is 0 and time stops for the counters, so they keep exactly what a test sets.
class SimulatedPattern {
public:
    explicit SimulatedPattern(const SimulatedClock& clock) : clock_(clock) {}

    /// Seconds since construction, or until frozen.
    double seconds() const;

    void freeze();

    /// A slow movement around 0 within -1..1, different for each channel.
    double wave(std::uint32_t channel) const { return waveAt(channel, seconds()); }
    double waveAt(std::uint32_t channel, double seconds) const;

    /// Mostly 0, with a short peak up to 1 about every 30 seconds.
    double burstAt(std::uint32_t channel, double seconds) const;

private:
    const SimulatedClock& clock_;
    double frozenAt_ = -1;
};

/// Integrates a fluctuation over time: calls back with the times and lengths, in seconds, of the interval since
/// the last call, split into at most 120 pieces.
class SimulatedStretch {
public:
    template <typename Piece>
    void catchUp(double now, Piece&& piece) {
        const double gap = now - last_;
        if (gap <= 0) {
            return;
        }
        constexpr double pieceSeconds = 0.5;
        constexpr int mostPieces = 120;
        const int pieces = gap > pieceSeconds * mostPieces ? mostPieces : static_cast<int>(gap / pieceSeconds) + 1;
        for (int index = 1; index <= pieces; ++index) {
            piece(last_ + gap * index / pieces, gap / pieces);
        }
        last_ = now;
    }

private:
    double last_ = 0;
};

}  // namespace kestro
