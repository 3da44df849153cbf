#include "platform/linux/linux_network_interfaces.h"

#include "platform/linux/interface_facts.h"
#include "platform/linux/text_parsing.h"

#include <arpa/inet.h>

#include <algorithm>
#include <array>
#include <utility>

namespace kestro {
namespace {

bool isLinkLevel(const InterfaceEntry& entry) {
    return entry.address && entry.address->family == AddressFamily::link;
}

/// Leaves out the link-level entries of interfaces that only repeat the traffic of others, and lists what is left
/// of them after the interfaces with traffic of their own: a container's bridge is not the way to the network.
void orderByTraffic(const std::string& root, std::vector<InterfaceEntry>& entries) {
    std::vector<InterfaceFacts> facts;
    for (const auto& entry : entries) {
        if (isLinkLevel(entry)) {
            constexpr auto active = interfaceUp | interfaceRunning;
            facts.push_back(readInterfaceFacts(root, entry.name));
            facts.back().isLoopback = (entry.flags & interfaceLoopback) != 0;
            facts.back().isUp = (entry.flags & active) == active;
        }
    }
    const auto repeats = repeatsTraffic(facts);
    std::vector<std::string> repeating;
    std::size_t link = 0;
    std::erase_if(entries, [&](const InterfaceEntry& entry) {
        const bool dropped = isLinkLevel(entry) && repeats[link++];
        if (dropped) {
            repeating.push_back(entry.name);
        }
        return dropped;
    });
    std::stable_partition(entries.begin(), entries.end(), [&](const InterfaceEntry& entry) {
        return std::ranges::find(repeating, entry.name) == repeating.end();
    });
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
    }
    return entries_.has_value();
}

std::optional<std::vector<InterfaceEntry>> LinuxNetworkInterfaces::getifaddrs() {
    if (!refreshEntries()) {
        return std::nullopt;
    }
    traffic_.clear();
    if (const auto text = counters_.read(buffer_)) {
        parseInterfaceTraffic(*text, traffic_);
    }
    auto entries = entries_;
    for (auto& entry : *entries) {
        if (isLinkLevel(entry)) {
            const auto found = std::ranges::find(traffic_, entry.name, &InterfaceTraffic::name);
            entry.statistics = found != traffic_.end() ? std::optional(found->statistics) : std::nullopt;
        }
    }
    return entries;
}

std::optional<std::string> LinuxNetworkInterfaces::getnameinfo(const InterfaceAddress& address) {
    std::array<char, INET_ADDRSTRLEN> text{};
    if (address.family != AddressFamily::ipv4 ||
        ::inet_ntop(AF_INET, address.ipv4.data(), text.data(), text.size()) == nullptr) {
        return std::nullopt;
    }
    return std::string(text.data());
}

}  // namespace kestro
