#include "tests/platform/linux/network/network_namespace.h"

#include "platform/linux/network/interface_facts.h"
#include "platform/linux/network/linux_network_interfaces.h"
#include "tests/support/temporary_directory.h"

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <gtest/gtest.h>
#include <linux/if_tun.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <ostream>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kestro {
namespace {

using test::NetworkNamespace;
using Names = std::vector<std::string>;

/// Interfaces to create in an empty namespace, and what must be found there.
struct Setup {
    const char* name;
    std::function<bool()> create;
    Names links;           ///< that are counted, sorted
    InterfaceFacts facts;  ///< of one of the interfaces
};

void PrintTo(const Setup& setup, std::ostream* out) {
    *out << setup.name;
}

void awaitPair() {
    NetworkNamespace::awaitRunning("near");
    NetworkNamespace::awaitRunning("far");
}

bool addPair() {
    const bool isUp = NetworkNamespace::addVethPair("near", "far") && NetworkNamespace::setUp("near") &&
                      NetworkNamespace::setUp("far");
    awaitPair();
    return isUp;
}

/// A bridge or a bond with a port.
bool addMaster(const char* kind, const char* name) {
    const bool isUp = NetworkNamespace::add(kind, name) && NetworkNamespace::addVethPair("near", "far") &&
                      NetworkNamespace::setMaster("near", name) && NetworkNamespace::setUp("near") &&
                      NetworkNamespace::setUp("far") && NetworkNamespace::setUp(name);
    awaitPair();
    return isUp;
}

bool addTun(int flags) {
    return NetworkNamespace::addTun("tun7", flags) && NetworkNamespace::setUp("tun7");
}

InterfaceFacts facts(std::string name) {
    InterfaceFacts result;
    result.name = std::move(name);
    return result;
}

InterfaceFacts tunnel(std::string name) {
    auto result = facts(std::move(name));
    result.isTunnel = true;
    return result;
}

InterfaceFacts above(std::string name, Names lower) {
    auto result = facts(std::move(name));
    result.lowerNames = std::move(lower);
    return result;
}

InterfaceFacts bridge(std::string name, Names ports) {
    auto result = above(std::move(name), std::move(ports));
    result.isBridge = true;
    return result;
}

InterfaceFacts port(std::string name) {
    auto result = facts(std::move(name));
    result.isBridgePort = true;
    return result;
}

std::vector<Setup> setups() {
    return {
        {"Tun", [] { return addTun(IFF_TUN); }, {"lo", "tun7"}, tunnel("tun7")},
        {"Tap", [] { return addTun(IFF_TAP); }, {"lo", "tun7"}, tunnel("tun7")},
        {"Veth", [] { return addPair(); }, {"far", "lo", "near"}, facts("near")},
        {"TunBesideAVeth", [] { return addPair() && addTun(IFF_TUN); }, {"far", "lo", "near"}, tunnel("tun7")},
        {"Bridge", [] { return addMaster("bridge", "br7"); }, {"far", "lo"}, bridge("br7", {"near"})},
        {"BridgePort", [] { return addMaster("bridge", "br7"); }, {"far", "lo"}, port("near")},
        {"Bond", [] { return addMaster("bond", "bond7"); }, {"far", "lo", "near"}, above("bond7", {"near"})},
        {"Vlan",
         [] {
             return addPair() && NetworkNamespace::addVlan("near.7", "near", 7) &&
                    NetworkNamespace::setUp("near.7");
         },
         {"far", "lo", "near"},
         above("near.7", {"near"})},
        {"WireGuard",
         [] { return NetworkNamespace::add("wireguard", "wg7") && NetworkNamespace::setUp("wg7"); },
         {"lo", "wg7"},
         tunnel("wg7")},
    };
}

constexpr std::array<std::string_view, 8> ours{"lo", "near", "far", "tun7", "br7", "bond7", "near.7", "wg7"};

constexpr int mayNot = 77;

bool sameFacts(const InterfaceFacts& a, const InterfaceFacts& b) {
    return a.isHardware == b.isHardware && a.isBridge == b.isBridge && a.isBridgePort == b.isBridgePort &&
           a.isTunnel == b.isTunnel && a.lowerNames == b.lowerNames;
}

/// In a child process: creates the interfaces and looks at them. Returns an exit status.
int look(const Setup& setup, const std::string& root) {
    if (!NetworkNamespace::enter(root) || !setup.create()) {
        return mayNot;
    }
    LinuxNetworkInterfaces interfaces(root);
    Names links;
    bool haveStatistics = true;
    const auto entries = interfaces.getifaddrs().value_or(std::span<const InterfaceEntry>());
    for (const auto& entry : entries) {
        // Some kernels add unused tunnels to every namespace.
        const bool isOurs = std::ranges::find(ours, entry.name) != ours.end();
        if (isOurs && entry.address && entry.address->family == AddressFamily::link) {
            links.push_back(entry.name);
            haveStatistics = haveStatistics && entry.statistics.has_value();
        }
    }
    std::ranges::sort(links);
    if (links == setup.links && haveStatistics &&
        sameFacts(readInterfaceFacts(root, setup.facts.name), setup.facts)) {
        return EXIT_SUCCESS;
    }
    std::fputs(fmt::format("{}: found {}\n", setup.name, fmt::join(links, " ")).c_str(), stderr);
    return EXIT_FAILURE;
}

class NetworkNamespaceTest : public testing::TestWithParam<Setup> {};

TEST_P(NetworkNamespaceTest, FindsTheInterfacesOfTheRunningKernel) {
    const TemporaryDirectory directory;
    const pid_t child = ::fork();
    if (child == 0) {
        ::_exit(look(GetParam(), directory.path().string()));
    }
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFEXITED(status));
    if (WEXITSTATUS(status) == mayNot) {
        GTEST_SKIP() << "may not create such an interface here";
    }
    EXPECT_EQ(WEXITSTATUS(status), EXIT_SUCCESS);
}

INSTANTIATE_TEST_SUITE_P(LinuxNetworkInterfaces, NetworkNamespaceTest, testing::ValuesIn(setups()),
                         [](const auto& setup) { return std::string(setup.param.name); });

}  // namespace
}  // namespace kestro
