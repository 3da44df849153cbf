#include "tests/platform/macos/fakes/fake_mac.h"

#include <ifaddrs.h>
#include <net/if.h>
#include <netdb.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace kestro::fakes {

namespace {

FakeKernel& kernel() {
    return FakeMac::current().kernel;
}

bool fails(const char* function) {
    return FakeMac::current().fails(function);
}

/// An entry of a list with what it points to.
struct InterfaceNode {
    ifaddrs entry{};
    std::string name;
    sockaddr_in internet{};
    sockaddr link{};
    if_data data{};
};

struct InterfaceNodes {
    std::vector<std::unique_ptr<InterfaceNode>> nodes;
};

void fill(InterfaceNode& node, const FakeInterface& source) {
    node.name = source.name;
    node.entry.ifa_name = node.name.data();
    node.entry.ifa_flags = source.flags;
    if (source.family == AF_INET) {
        node.internet.sin_len = sizeof node.internet;
        node.internet.sin_family = AF_INET;
        std::memcpy(&node.internet.sin_addr, source.ipv4.data(), source.ipv4.size());
        node.entry.ifa_addr = reinterpret_cast<sockaddr*>(&node.internet);
    } else if (source.family != 0) {
        node.link.sa_len = sizeof node.link;
        node.link.sa_family = static_cast<sa_family_t>(source.family);
        node.entry.ifa_addr = &node.link;
    }
    if (source.family == AF_LINK && source.hasStatistics) {
        node.data.ifi_type = source.type;
        node.data.ifi_ibytes = source.receivedBytes;
        node.data.ifi_obytes = source.sentBytes;
        node.entry.ifa_data = &node.data;
    }
}

std::map<const void*, std::unique_ptr<InterfaceNodes>> interfaceMemory;

}  // namespace

FakeKernel::FakeKernel() = default;

FakeKernel::~FakeKernel() {
    interfaceMemory.clear();
}

}  // namespace kestro::fakes

using namespace kestro::fakes;

extern "C" {

int getifaddrs(ifaddrs** list) {
    FakeKernel& state = kernel();
    if (fails("getifaddrs")) {
        errno = EACCES;
        return -1;
    }
    auto memory = std::make_unique<InterfaceNodes>();
    *list = nullptr;
    for (auto source = state.interfaces.rbegin(); source != state.interfaces.rend(); ++source) {
        auto node = std::make_unique<InterfaceNode>();
        fill(*node, *source);
        node->entry.ifa_next = *list;
        *list = &node->entry;
        memory->nodes.push_back(std::move(node));
    }
    if (*list != nullptr) {
        state.interfaceLists.insert(*list);
        interfaceMemory[*list] = std::move(memory);
    }
    return 0;
}

void freeifaddrs(ifaddrs* list) {
    if (list != nullptr && kernel().interfaceLists.erase(list) == 0) {
        kernel().misuse.emplace_back("freeifaddrs of a list that is not held");
    }
    interfaceMemory.erase(list);
}

int getnameinfo(const sockaddr* address, socklen_t length, char* host, socklen_t hostLength, char* service,
                socklen_t, int flags) {
    const bool isValid = address->sa_family == AF_INET && address->sa_len == sizeof(sockaddr_in) &&
                         length == sizeof(sockaddr_in) && service == nullptr && flags == NI_NUMERICHOST;
    if (fails("getnameinfo") || !isValid) {
        return EAI_FAMILY;
    }
    std::uint8_t bytes[4];
    std::memcpy(bytes, &reinterpret_cast<const sockaddr_in*>(address)->sin_addr, sizeof bytes);
    std::snprintf(host, hostLength, "%d.%d.%d.%d", bytes[0], bytes[1], bytes[2], bytes[3]);
    return 0;
}

}  // extern "C"
