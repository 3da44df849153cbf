#pragma once

#include "platform/simulated/simulated_mac.h"
#include "tests/drills/drill.h"

#include <span>
#include <string_view>

namespace kestro::drills {

struct FaultyKestro;

/// An operation of a port that can fail.
struct PortFault {
    std::string_view name;

    /// Makes the operation fail from now on.
    void (*always)(SimulatedMac& mac);

    /// Makes it fail about every second time, where the simulated machine can do that.
    void (*sometimes)(SimulatedMac& mac, std::uint32_t seed);

    /// Whether the program shows the documented fallback after half a minute with every window open.
    bool (*isFallbackShown)(FaultyKestro& kestro);

    /// Whether the fallback is the same when everything else fails, too.
    bool holdsWhenAllFail;
};

std::span<const PortFault> allPortFaults();

}  // namespace kestro::drills
