#include "tests/platform/linux/network/network_namespace.h"

#include "platform/posix/descriptor.h"

#include <fcntl.h>
#include <linux/if_link.h>
#include <linux/if_tun.h>
#include <linux/rtnetlink.h>
#include <linux/veth.h>
#include <net/if.h>
#include <poll.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/mount.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>

namespace kestro::test {
namespace {

/// A message about one interface, with room for a few attributes.
class LinkRequest {
public:
    LinkRequest(std::uint16_t type, std::uint16_t flags) {
        message_.header.nlmsg_len = NLMSG_LENGTH(sizeof(ifinfomsg));
        message_.header.nlmsg_type = type;
        message_.header.nlmsg_flags = static_cast<std::uint16_t>(NLM_F_REQUEST | NLM_F_ACK | flags);
    }

    ifinfomsg& info() { return message_.info; }

    LinkRequest& add(std::uint16_t type, const void* data, std::size_t size) {
        rtattr attribute{static_cast<unsigned short>(RTA_LENGTH(size)), type};
        std::memcpy(end(), &attribute, sizeof attribute);
        std::memcpy(end() + RTA_LENGTH(0), data, size);
        message_.header.nlmsg_len += static_cast<std::uint32_t>(RTA_ALIGN(RTA_LENGTH(size)));
        return *this;
    }
    LinkRequest& add(std::uint16_t type, std::string_view text) { return add(type, text.data(), text.size()); }
    LinkRequest& add(std::uint16_t type, std::uint32_t number) { return add(type, &number, sizeof number); }

    /// Begins an attribute that contains those added until `close`.
    std::size_t open(std::uint16_t type) {
        const std::size_t start = message_.header.nlmsg_len;
        add(type, std::string_view(""));
        return start;
    }
    void close(std::size_t start) {
        rtattr attribute{};
        char* const place = reinterpret_cast<char*>(&message_) + start;
        std::memcpy(&attribute, place, sizeof attribute);
        attribute.rta_len = static_cast<unsigned short>(message_.header.nlmsg_len - start);
        std::memcpy(place, &attribute, sizeof attribute);
    }

    void addHeader(const ifinfomsg& peer) {
        std::memcpy(end(), &peer, sizeof peer);
        message_.header.nlmsg_len += static_cast<std::uint32_t>(NLMSG_ALIGN(sizeof peer));
    }

    /// Whether the kernel carried it out.
    bool send() {
        const Descriptor socket(::socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC, NETLINK_ROUTE));
        if (!socket.isOpen() || ::send(socket.get(), &message_, message_.header.nlmsg_len, 0) < 0) {
            return false;
        }
        struct {
            nlmsghdr header;
            nlmsgerr result;
            std::array<char, 512> rest;
        } answer{};
        const auto length = ::recv(socket.get(), &answer, sizeof answer, 0);
        return length > 0 && answer.header.nlmsg_type == NLMSG_ERROR && answer.result.error == 0;
    }

private:
    char* end() { return reinterpret_cast<char*>(&message_) + message_.header.nlmsg_len; }

    struct {
        nlmsghdr header;
        ifinfomsg info;
        std::array<char, 1024> attributes;
    } message_{};
};

LinkRequest newLink(const std::string& name) {
    LinkRequest request(RTM_NEWLINK, NLM_F_CREATE | NLM_F_EXCL);
    request.add(IFLA_IFNAME, name);
    return request;
}

LinkRequest change(const std::string& name) {
    LinkRequest request(RTM_NEWLINK, 0);
    request.info().ifi_index = static_cast<int>(::if_nametoindex(name.c_str()));
    return request;
}

}  // namespace

bool NetworkNamespace::enter(const std::string& root) {
    if (::unshare(CLONE_NEWNET | CLONE_NEWNS) != 0 && ::unshare(CLONE_NEWUSER | CLONE_NEWNET | CLONE_NEWNS) != 0) {
        return false;
    }
    const auto sys = root + "/sys";
    return ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 && ::mkdir(sys.c_str(), 0755) == 0 &&
           ::mount("sysfs", sys.c_str(), "sysfs", MS_RDONLY | MS_NOSUID | MS_NODEV | MS_NOEXEC, nullptr) == 0 &&
           ::symlink("/proc", (root + "/proc").c_str()) == 0;
}

bool NetworkNamespace::addTun(const std::string& name, int flags) {
    ifreq request{};
    std::strncpy(request.ifr_name, name.c_str(), IFNAMSIZ - 1);
    request.ifr_flags = static_cast<short>(flags | IFF_NO_PI);
    // Stays open as long as the process, and keeps the interface. A device belongs to the namespace in which it
    // was opened.
    const int tun = ::open("/dev/net/tun", O_RDWR | O_CLOEXEC);
    return tun >= 0 && ::ioctl(tun, TUNSETIFF, &request) == 0;
}

bool NetworkNamespace::addVethPair(const std::string& name, const std::string& peer) {
    auto request = newLink(name);
    const auto info = request.open(IFLA_LINKINFO);
    request.add(IFLA_INFO_KIND, std::string_view("veth"));
    const auto data = request.open(IFLA_INFO_DATA);
    const auto other = request.open(VETH_INFO_PEER);
    request.addHeader(ifinfomsg{});
    request.add(IFLA_IFNAME, peer);
    request.close(other);
    request.close(data);
    request.close(info);
    return request.send();
}

bool NetworkNamespace::addVlan(const std::string& name, const std::string& lower, std::uint16_t id) {
    auto request = newLink(name);
    request.add(IFLA_LINK, static_cast<std::uint32_t>(::if_nametoindex(lower.c_str())));
    const auto info = request.open(IFLA_LINKINFO);
    request.add(IFLA_INFO_KIND, std::string_view("vlan"));
    const auto data = request.open(IFLA_INFO_DATA);
    request.add(IFLA_VLAN_ID, &id, sizeof id);
    request.close(data);
    request.close(info);
    return request.send();
}

bool NetworkNamespace::add(std::string_view kind, const std::string& name) {
    auto request = newLink(name);
    const auto info = request.open(IFLA_LINKINFO);
    request.add(IFLA_INFO_KIND, kind);
    request.close(info);
    return request.send();
}

bool NetworkNamespace::setMaster(const std::string& name, const std::string& master) {
    auto request = change(name);
    request.add(IFLA_MASTER, static_cast<std::uint32_t>(::if_nametoindex(master.c_str())));
    return request.send();
}

bool NetworkNamespace::setUp(const std::string& name) {
    auto request = change(name);
    request.info().ifi_flags = IFF_UP;
    request.info().ifi_change = IFF_UP;
    return request.send();
}

void NetworkNamespace::awaitRunning(const std::string& name) {
    constexpr int mostAnnouncements = 100;
    constexpr int longestPause = 20'000;  // milliseconds
    const Descriptor announcements(::socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC | SOCK_NONBLOCK, NETLINK_ROUTE));
    sockaddr_nl address{};
    address.nl_family = AF_NETLINK;
    address.nl_groups = RTMGRP_LINK;
    if (::bind(announcements.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
        return;
    }
    const Descriptor question(::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0));
    for (int count = 0; count < mostAnnouncements; ++count) {
        ifreq request{};
        std::strncpy(request.ifr_name, name.c_str(), IFNAMSIZ - 1);
        if (::ioctl(question.get(), SIOCGIFFLAGS, &request) != 0 || (request.ifr_flags & IFF_RUNNING) != 0) {
            return;
        }
        pollfd change{announcements.get(), POLLIN, 0};
        std::array<char, 4096> ignored;
        if (::poll(&change, 1, longestPause) <= 0 ||
            ::recv(announcements.get(), ignored.data(), ignored.size(), 0) < 0) {
            return;
        }
    }
}

}  // namespace kestro::test
