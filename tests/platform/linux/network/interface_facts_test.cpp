#include "platform/linux/network/interface_facts.h"

#include "platform/linux/network/interface_traffic.h"
#include "tests/platform/linux/support.h"

#include <gtest/gtest.h>

#include <string>

namespace kestro {
namespace {

using test::fixture;
using test::TemporaryTree;

InterfaceFacts plain(std::string name) {
    InterfaceFacts facts;
    facts.name = std::move(name);
    facts.isUp = true;
    return facts;
}

InterfaceFacts hardware(std::string name, bool isUp = true) {
    auto facts = plain(std::move(name));
    facts.isHardware = true;
    facts.isUp = isUp;
    return facts;
}

InterfaceFacts loopback() {
    auto facts = plain("lo");
    facts.isLoopback = true;
    return facts;
}

InterfaceFacts above(std::string name, std::vector<std::string> lower) {
    auto facts = plain(std::move(name));
    facts.lowerNames = std::move(lower);
    return facts;
}

InterfaceFacts bridge(std::string name, std::vector<std::string> ports) {
    auto facts = above(std::move(name), std::move(ports));
    facts.isBridge = true;
    return facts;
}

InterfaceFacts port(std::string name) {
    auto facts = plain(std::move(name));
    facts.isBridgePort = true;
    return facts;
}

InterfaceFacts tunnel(std::string name) {
    auto facts = plain(std::move(name));
    facts.isTunnel = true;
    return facts;
}

/// Names of the counted interfaces.
std::vector<std::string> counted(const std::vector<InterfaceFacts>& interfaces) {
    const auto standing = standings(interfaces);
    std::vector<std::string> names;
    for (std::size_t index = 0; index < interfaces.size(); ++index) {
        if (standing[index] == InterfaceStanding::counted) {
            names.push_back(interfaces[index].name);
        }
    }
    return names;
}

using Names = std::vector<std::string>;

TEST(Standings, CountsHardwareButNothingOnTopOfIt) {
    EXPECT_EQ(counted({loopback(), hardware("eth0"), hardware("eth1"), above("bond0", {"eth0", "eth1"}),
                       above("bond0.30", {"bond0"}), bridge("br0", {"bond0.30"})}),
              (Names{"lo", "eth0", "eth1"}));
}

TEST(Standings, IgnoresContainersAndVirtualMachinesWhileHardwareIsUp) {
    EXPECT_EQ(
        counted({hardware("eth0"), bridge("docker0", {"veth1"}), port("veth1"), port("vnet0"), plain("veth2")}),
        (Names{"eth0"}));
}

TEST(Standings, IgnoresTunnelsWhileHardwareIsUp) {
    EXPECT_EQ(counted({hardware("wlan0"), tunnel("wg0"), tunnel("tun0")}), (Names{"wlan0"}));
}

TEST(Standings, CountsATunnelWhenNoHardwareIsUp) {
    EXPECT_EQ(counted({loopback(), hardware("wlan0", false), tunnel("ppp0")}), (Names{"lo", "wlan0", "ppp0"}));
}

TEST(Standings, CountsHardwareThatIsABridgePort) {
    auto wired = hardware("eth0");
    wired.isBridgePort = true;

    EXPECT_EQ(counted({wired, bridge("br0", {"eth0", "vnet0"}), port("vnet0")}), (Names{"eth0"}));
}

TEST(Standings, CountsStackedHardwareOnce) {
    auto synthetic = hardware("eth0");
    synthetic.lowerNames = {"enP1s1"};
    auto alone = hardware("eth1");
    alone.lowerNames = {"gone"};

    EXPECT_EQ(counted({synthetic, hardware("enP1s1"), alone}), (Names{"enP1s1", "eth1"}));
}

TEST(Standings, CountsAContainersOnlyVeth) {
    EXPECT_EQ(counted({loopback(), plain("eth0")}), (Names{"lo", "eth0"}));
}

TEST(Standings, CountsAContainersVethButNothingOnTopOfIt) {
    EXPECT_EQ(counted({loopback(), plain("eth0"), bridge("docker0", {"veth1"}), port("veth1"), tunnel("wg0"),
                       above("eth0.5", {"eth0"})}),
              (Names{"lo", "eth0"}));
}

TEST(Standings, CountsALoneBridge) {
    EXPECT_EQ(counted({bridge("br0", {"veth1"}), port("veth1"), tunnel("tun0")}), (Names{"br0"}));
}

TEST(Standings, AreEmptyWithoutInterfaces) {
    EXPECT_TRUE(standings({}).empty());
}

TEST(Standings, DistinguishesUplinksFromInnerBridges) {
    using enum InterfaceStanding;
    auto wired = hardware("eth0");
    wired.isBridgePort = true;

    EXPECT_EQ(standings({hardware("eth1"), above("bond0", {"eth1"}), above("bond0.30", {"bond0"}),
                         bridge("br0", {"bond0.30", "vnet0"}), port("vnet0")}),
              (std::vector{counted, carried, carried, carried, inner}));
    EXPECT_EQ(
        standings({wired, bridge("br0", {"eth0"}), bridge("docker0", {"veth1"}), port("veth1"), tunnel("wg0")}),
        (std::vector{counted, carried, inner, inner, inner}));
}

TEST(Standings, ClassifyATunnelBoundToHardwareAsInner) {
    using enum InterfaceStanding;
    auto overlay = tunnel("flannel.1");
    overlay.lowerNames = {"eth0"};

    EXPECT_EQ(standings({hardware("eth0"), overlay}), (std::vector{counted, inner}));
    EXPECT_EQ(standings({hardware("eth0"), overlay, bridge("cni0", {"flannel.1"}), above("cni0.5", {"cni0"})}),
              (std::vector{counted, inner, inner, inner}));
}

TEST(Standings, TolerateCyclicLayers) {
    using enum InterfaceStanding;

    EXPECT_EQ(standings({hardware("eth0"), above("a", {"b"}), above("b", {"a"}), bridge("self", {"self"})}),
              (std::vector{counted, inner, inner, inner}));
}

TEST(ReadInterfaceFacts, DistinguishesTheKinds) {
    const auto root = fixture("amd-desktop");

    EXPECT_TRUE(readInterfaceFacts(root, "enp4s0").isHardware);
    EXPECT_EQ(readInterfaceFacts(root, "bond0").lowerNames, (Names{"enp4s0", "enp5s0"}));
    EXPECT_TRUE(readInterfaceFacts(root, "virbr0").isBridge);
    EXPECT_TRUE(readInterfaceFacts(root, "vnet0").isBridgePort);
    EXPECT_TRUE(readInterfaceFacts(root, "vnet0").isTunnel);
    EXPECT_TRUE(readInterfaceFacts(fixture("hybrid-laptop"), "wg0").isTunnel);
    EXPECT_TRUE(readInterfaceFacts(fixture("hybrid-laptop"), "tun0").isTunnel);
    EXPECT_FALSE(readInterfaceFacts(fixture("container"), "eth0").isTunnel);
}

TEST(ReadInterfaceFacts, DoesNotTreatAModemChannelAsATunnel) {
    TemporaryTree tree;
    tree.write("/sys/class/net/qmimux0/type", "65534\n")
        .write("/sys/class/net/qmimux0/uevent", "INTERFACE=qmimux0\nIFINDEX=7\n")
        .write("/sys/class/net/qmimux0/lower_wwan0", "")
        .write("/sys/class/net/vxlan5/type", "1\n")
        .write("/sys/class/net/vxlan5/uevent", "DEVTYPE=vxlan\nINTERFACE=vxlan5\n")
        .write("/sys/class/net/vxlan5/lower_wwan0", "");

    EXPECT_FALSE(readInterfaceFacts(tree.root(), "qmimux0").isTunnel);
    EXPECT_TRUE(readInterfaceFacts(tree.root(), "vxlan5").isTunnel);
}

TEST(ReadInterfaceFacts, FindsNothingForInvalidFileNames) {
    TemporaryTree tree;
    tree.write("/sys/class/device", "")
        .write("/sys/class/net/odd/type", "\xFF")
        .write("/sys/class/net/odd/uevent", "");

    EXPECT_FALSE(readInterfaceFacts(tree.root(), "..").isHardware);
    EXPECT_FALSE(readInterfaceFacts(tree.root(), "").isHardware);
    EXPECT_FALSE(readInterfaceFacts(tree.root(), "a/../..").isHardware);
    EXPECT_FALSE(readInterfaceFacts(tree.root(), "odd").isTunnel);
    EXPECT_FALSE(readInterfaceFacts(tree.root(), "none").isHardware);
}

TEST(ParseInterfaceTraffic, Reads64BitCounters) {
    std::vector<InterfaceTraffic> traffic;

    parseInterfaceTraffic(
        "Inter-|   Receive\n face |bytes packets\n    lo:    3367 31 0 0 0 0 0 0 3367 31 0 0 0 0 0 0\n"
        "eth0:18446744073709551615 2 3 4 5 6 7 8 8123456789012 10 0 0 0 0 0 0\n",
        traffic);

    ASSERT_EQ(traffic.size(), 2U);
    EXPECT_EQ(traffic[0].name, "lo");
    EXPECT_EQ(traffic[1].name, "eth0");
    EXPECT_EQ(traffic[1].statistics.receivedBytes, 18446744073709551615ULL);
    EXPECT_EQ(traffic[1].statistics.sentBytes, 8123456789012ULL);
}

TEST(ParseInterfaceTraffic, SkipsMalformedLines) {
    std::vector<InterfaceTraffic> traffic;

    parseInterfaceTraffic(
        "eth0: 1 2 3\neth1 1 2 3 4 5 6 7 8 9\n: 1 2 3 4 5 6 7 8 9\neth2: -1 2 3 4 5 6 7 8 9\n"
        "eth3: 18446744073709551616 2 3 4 5 6 7 8 9\n\xFF\xFE\neth4: 1 2 3 4 5 6 7 8 x\n",
        traffic);

    EXPECT_TRUE(traffic.empty());
}

}  // namespace
}  // namespace kestro
