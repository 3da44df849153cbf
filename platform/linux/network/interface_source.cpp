#include "platform/linux/network/interface_source.h"

#include <ifaddrs.h>
#include <linux/netlink.h>
#include <linux/rtnetlink.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <memory>
#include <utility>

namespace kestro {
namespace {

// Bounds the work in a burst of notifications; the rest is read next time.
constexpr int announcementLimit = 256;

InterfaceAddress asAddress(const sockaddr& address) {
    InterfaceAddress result;
    if (address.sa_family == AF_PACKET) {
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

InterfaceEntry interfaceEntry(const ifaddrs& entry) {
    InterfaceEntry result;
    result.name = entry.ifa_name;
    result.flags = entry.ifa_flags;
    if (entry.ifa_addr != nullptr) {
        result.address = asAddress(*entry.ifa_addr);
    } else if (entry.ifa_data != nullptr) {
        result.address = InterfaceAddress{.family = AddressFamily::link};
    }
    return result;
}

KernelInterfaceSource::KernelInterfaceSource()
    : announcements_(::socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC | SOCK_NONBLOCK, NETLINK_ROUTE)) {
    sockaddr_nl address{};
    address.nl_family = AF_NETLINK;
    address.nl_groups = RTMGRP_LINK | RTMGRP_IPV4_IFADDR;
    if (announcements_.isOpen() &&
        ::bind(announcements_.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
        announcements_.close();
    }
}

std::optional<std::vector<InterfaceEntry>> KernelInterfaceSource::list() {
    struct Free {
        void operator()(ifaddrs* list) const { ::freeifaddrs(list); }
    };
    ifaddrs* first = nullptr;
    if (::getifaddrs(&first) != 0) {
        return std::nullopt;
    }
    const std::unique_ptr<ifaddrs, Free> owned(first);
    std::vector<InterfaceEntry> entries;
    for (const auto* entry = first; entry != nullptr; entry = entry->ifa_next) {
        entries.push_back(interfaceEntry(*entry));
    }
    return entries;
}

bool KernelInterfaceSource::hasChanged() {
    bool changed = std::exchange(isFirst_, false) || !announcements_.isOpen();
    std::array<char, 256> beginning;
    for (int count = 0; announcements_.isOpen() && count < announcementLimit; ++count) {
        const auto size = ::recv(announcements_.get(), beginning.data(), beginning.size(), MSG_DONTWAIT);
        if (size < 0 && errno == EINTR) {
            continue;
        }
        if (size < 0 && (errno == EAGAIN || errno == EWOULDBLOCK)) {
            break;
        }
        // This includes ENOBUFS: notifications were lost, so assume a change.
        changed = true;
    }
    return changed;
}

}  // namespace kestro
