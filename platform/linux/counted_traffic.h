#pragma once

#include "platform/linux/interface_traffic.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kestro {

/// The traffic that links had while they were counted.
///
/// Which links count changes while the machine runs: wireless goes away and the tunnel above it remains, and then
/// the other way round. A link that joins brings the traffic of days along, which would look like that of one
/// moment in a sum over all links; so it starts anew here, from 1 where it had traffic: a sum of 0 would say that
/// there never was any. Links that join while no other is counted keep their
/// whole counters, since there is no sum that they could change. One thread at a time.
class CountedTraffic {
public:
    /// Takes over the links that are counted from now on, with the counters that `traffic` has for them.
    void follow(const std::vector<std::string_view>& links, const std::vector<InterfaceTraffic>& traffic);

    /// Of the link's present counters, what it moved while it was counted; all of it after the counters began
    /// anew. A link that is not counted has its counters as they are.
    InterfaceStatistics sinceCounted(std::string_view link, const InterfaceStatistics& now);

private:
    struct Link {
        std::string name;
        std::optional<InterfaceStatistics> origin;  ///< absent until its counters could be read
    };

    std::vector<Link> links_;
};

}  // namespace kestro
