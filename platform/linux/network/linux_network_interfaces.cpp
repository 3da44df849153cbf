#include "platform/linux/network/linux_network_interfaces.h"

#include "core/base/text.h"
#include "platform/linux/network/interface_facts.h"

#include <fmt/ranges.h>

#include <algorithm>
#include <utility>

namespace kestro {
namespace {

bool isLinkLevel(const InterfaceEntry& entry) {
    return entry.address && entry.address->family == AddressFamily::link;
}

bool isActive(const InterfaceEntry& entry) {
    constexpr auto active = interfaceUp | interfaceRunning;
    return (entry.flags & active) == active;
}

/// Drops the link-level entries of interfaces that only repeat the traffic of others, and sorts their remaining
/// entries after interfaces with traffic of their own: a container's bridge is not an uplink.
void orderByTraffic(const std::string& root, std::vector<InterfaceEntry>& entries) {
    std::vector<InterfaceFacts> facts;
    for (const auto& entry : entries) {
        if (isLinkLevel(entry)) {
            facts.push_back(readInterfaceFacts(root, entry.name));
            facts.back().isLoopback = (entry.flags & interfaceLoopback) != 0;
            facts.back().isUp = isActive(entry);
        }
    }
    const auto standing = standings(facts);
    const auto standingOf = [&](const InterfaceEntry& entry) {
        const auto found = std::ranges::find(facts, entry.name, &InterfaceFacts::name);
        return found != facts.end() ? standing[static_cast<std::size_t>(found - facts.begin())]
                                    : InterfaceStanding::counted;
    };
    std::erase_if(entries, [&](const InterfaceEntry& entry) {
        return isLinkLevel(entry) && standingOf(entry) != InterfaceStanding::counted;
    });
    std::ranges::stable_sort(entries, {}, standingOf);
}

}  // namespace

LinuxNetworkInterfaces::LinuxNetworkInterfaces(std::string root, std::unique_ptr<InterfaceSource> source)
    : root_(std::move(root)),
      source_(source ? std::move(source) : std::make_unique<KernelInterfaceSource>()),
      counters_(pathUnder(root_, "/proc/net/dev")) {}

bool LinuxNetworkInterfaces::refreshEntries() {
    if (!source_->hasChanged() && entries_) {
        return true;
    }
    entries_ = source_->list();
    if (entries_) {
        orderByTraffic(root_, *entries_);
        areLinksFollowed_ = false;
    }
    return entries_.has_value();
}

void LinuxNetworkInterfaces::followLinks() {
    std::vector<std::string_view> links;
    for (const auto& entry : *entries_) {
        if (isLinkLevel(entry) && isActive(entry) && (entry.flags & interfaceLoopback) == 0) {
            links.emplace_back(entry.name);
        }
    }
    counted_.follow(links, traffic_);
    areLinksFollowed_ = true;
}

std::optional<std::span<const InterfaceEntry>> LinuxNetworkInterfaces::getifaddrs() {
    if (!refreshEntries()) {
        return std::nullopt;
    }
    traffic_.clear();
    if (const auto text = counters_.read(buffer_)) {
        parseInterfaceTraffic(*text, traffic_);
    }
    if (!areLinksFollowed_) {
        followLinks();
    }
    for (auto& entry : *entries_) {
        if (isLinkLevel(entry)) {
            const auto found = std::ranges::find(traffic_, entry.name, &InterfaceTraffic::name);
            entry.statistics = found != traffic_.end()
                                   ? std::optional(counted_.sinceCounted(entry.name, found->statistics))
                                   : std::nullopt;
        }
    }
    return *entries_;
}

std::optional<std::string> LinuxNetworkInterfaces::getnameinfo(const InterfaceAddress& address) {
    if (address.family != AddressFamily::ipv4) {
        return std::nullopt;
    }
    return fmt::format("{}", fmt::join(address.ipv4, "."));
}

}  // namespace kestro
