#include "platform/linux/network/counted_traffic.h"

#include <algorithm>
#include <cstdint>
#include <utility>

namespace kestro {
namespace {

std::uint64_t growth(std::uint64_t now, std::uint64_t& origin) {
    if (now < origin) {
        // The interface was recreated under the same name.
        origin = 0;
    }
    return now - origin;
}

/// The origin of a link that joins others.
InterfaceStatistics originOf(const InterfaceStatistics& joining) {
    return {std::max<std::uint64_t>(joining.receivedBytes, 1) - 1,
            std::max<std::uint64_t>(joining.sentBytes, 1) - 1};
}

}  // namespace

void CountedTraffic::follow(const std::vector<std::string_view>& links,
                            const std::vector<InterfaceTraffic>& traffic) {
    std::vector<Link> followed;
    for (const auto link : links) {
        const auto known = std::ranges::find(links_, link, &Link::name);
        if (known != links_.end()) {
            followed.push_back(*known);
        } else if (links_.empty()) {
            followed.push_back({std::string(link), InterfaceStatistics{}});
        } else {
            const auto found = std::ranges::find(traffic, link, &InterfaceTraffic::name);
            followed.push_back({std::string(link), found != traffic.end()
                                                       ? std::optional(originOf(found->statistics))
                                                       : std::nullopt});
        }
    }
    links_ = std::move(followed);
}

InterfaceStatistics CountedTraffic::sinceCounted(std::string_view link, const InterfaceStatistics& now) {
    const auto known = std::ranges::find(links_, link, &Link::name);
    if (known == links_.end()) {
        return now;
    }
    if (!known->origin) {
        known->origin = originOf(now);
    }
    return {growth(now.receivedBytes, known->origin->receivedBytes),
            growth(now.sentBytes, known->origin->sentBytes)};
}

}  // namespace kestro
