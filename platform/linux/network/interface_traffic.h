#pragma once

#include "core/platform/network_interfaces.h"

#include <string_view>
#include <vector>

namespace kestro {

/// The traffic of an interface; the name points into the parsed text.
struct InterfaceTraffic {
    std::string_view name;
    InterfaceStatistics statistics;
};

/// Parses /proc/net/dev, whose counters are 64-bit, into `traffic` in file order; skips malformed lines. Reuses
/// the vector's memory. Any thread.
void parseInterfaceTraffic(std::string_view text, std::vector<InterfaceTraffic>& traffic);

}  // namespace kestro
