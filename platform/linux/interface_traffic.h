#pragma once

#include "core/platform/network_interfaces.h"

#include <string_view>
#include <vector>

namespace kestro {

/// The traffic of an interface; the name lies within the text that was parsed.
struct InterfaceTraffic {
    std::string_view name;
    InterfaceStatistics statistics;
};

/// Reads /proc/net/dev, whose counters have 64 bits, into `traffic` in the file's order; malformed lines are left
/// out. Reuses the vector's memory. Any thread.
void parseInterfaceTraffic(std::string_view text, std::vector<InterfaceTraffic>& traffic);

}  // namespace kestro
