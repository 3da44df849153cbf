#pragma once

#include "platform/linux/network/interface_traffic.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kestro {

/// Counts each link's traffic only while the link is in the counted set.
///
/// The set changes at run time: wireless disappears while the tunnel on top of it remains, and later returns. A
/// link that joins brings along the counters of days, which in a sum over all links would look like a burst. Its
/// count therefore restarts here, from 1 if it had any traffic, since a sum of 0 means that there never was any.
/// Links that join while no other is counted keep their full counters, because there is no sum to distort. One
/// thread at a time.
class CountedTraffic {
public:
    /// Replaces the set of counted links; `traffic` holds their current counters.
    void follow(const std::vector<std::string_view>& links, const std::vector<InterfaceTraffic>& traffic);

    /// What the link moved while it was counted, given its current counters; all of it if the counters restarted.
    /// For a link that is not counted, returns its counters unchanged.
    InterfaceStatistics sinceCounted(std::string_view link, const InterfaceStatistics& now);

private:
    struct Link {
        std::string name;
        std::optional<InterfaceStatistics> origin;  ///< nullopt until its counters have been read
    };

    std::vector<Link> links_;
};

}  // namespace kestro
