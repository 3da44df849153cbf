#include "platform/macos/mac_network_interfaces.h"

#include <ifaddrs.h>
#include <net/if.h>
#include <net/if_types.h>
#include <netdb.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <array>
#include <cstddef>
#include <cstring>
#include <memory>

namespace kestro {

namespace {

static_assert(IFF_UP == interfaceUp && IFF_LOOPBACK == interfaceLoopback && IFF_RUNNING == interfaceRunning);
static_assert(AF_INET == static_cast<int>(AddressFamily::ipv4) &&
              AF_LINK == static_cast<int>(AddressFamily::link));
static_assert(offsetof(if_data, ifi_ibytes) == 40 && offsetof(if_data, ifi_obytes) == 44);
static_assert(sizeof(if_data::ifi_ibytes) == 4 && sizeof(sockaddr_in) == 16);

struct InterfaceListReleaser {
    void operator()(ifaddrs* list) const { freeifaddrs(list); }
};
using InterfaceList = std::unique_ptr<ifaddrs, InterfaceListReleaser>;

/// Whether all traffic of such an interface also passes another one. Tunnels have the type "other".
bool repeatsTraffic(const if_data& data) {
    switch (data.ifi_type) {
        case IFT_BRIDGE:
        case IFT_L2VLAN:
        case IFT_IEEE8023ADLAG:
        case IFT_GIF:
        case IFT_STF:
        case IFT_OTHER:
            return true;
        default:
            return false;
    }
}

InterfaceAddress addressOf(const sockaddr& address) {
    InterfaceAddress result;
    if (address.sa_family == AF_LINK) {
        result.family = AddressFamily::link;
    } else if (address.sa_family == AF_INET) {
        sockaddr_in internet{};
        std::memcpy(&internet, &address, sizeof internet);
        result.family = AddressFamily::ipv4;
        std::memcpy(result.ipv4.data(), &internet.sin_addr, result.ipv4.size());
    }
    return result;
}

}  // namespace

std::optional<std::span<const InterfaceEntry>> MacNetworkInterfaces::getifaddrs() {
    ifaddrs* first = nullptr;
    if (::getifaddrs(&first) != 0) {
        return std::nullopt;
    }
    const InterfaceList list(first);
    entries_.clear();
    for (const ifaddrs* item = first; item != nullptr; item = item->ifa_next) {
        InterfaceEntry entry{.name = item->ifa_name, .flags = item->ifa_flags, .address = {}, .statistics = {}};
        if (item->ifa_addr != nullptr) {
            entry.address = addressOf(*item->ifa_addr);
        }
        if (entry.address && entry.address->family == AddressFamily::link && item->ifa_data != nullptr) {
            if_data data{};
            std::memcpy(&data, item->ifa_data, sizeof data);
            if (repeatsTraffic(data)) {
                continue;
            }
            entry.statistics = InterfaceStatistics{data.ifi_ibytes, data.ifi_obytes};
        }
        entries_.push_back(std::move(entry));
    }
    return entries_;
}

std::optional<std::string> MacNetworkInterfaces::getnameinfo(const InterfaceAddress& address) {
    if (address.family != AddressFamily::ipv4) {
        return std::nullopt;
    }
    sockaddr_in internet{};
    internet.sin_len = sizeof internet;
    internet.sin_family = AF_INET;
    std::memcpy(&internet.sin_addr, address.ipv4.data(), address.ipv4.size());
    std::array<char, NI_MAXHOST> host{};
    static_assert(NI_MAXHOST == 1025 && NI_NUMERICHOST == 2);
    if (::getnameinfo(reinterpret_cast<const sockaddr*>(&internet), sizeof internet, host.data(), host.size(),
                      nullptr, 0, NI_NUMERICHOST) != 0) {
        return std::nullopt;
    }
    return host.data();
}

}  // namespace kestro
