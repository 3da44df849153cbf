#include "platform/linux/network/linux_network_interfaces.h"

#include "core/telemetry/network_reader.h"
#include "tests/platform/linux/network/recorded_interfaces.h"
#include "tests/platform/linux/support.h"
#include "tests/support/allocation_counter.h"

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <memory>
#include <span>
#include <string>

namespace kestro {
namespace {

using test::fixture;
using test::RecordedInterfaces;
using test::TemporaryTree;
using testing::ElementsAre;

class Machine {
public:
    explicit Machine(const std::string& root) {
        auto owned = std::make_unique<RecordedInterfaces>(root);
        source = owned.get();
        interfaces = std::make_unique<LinuxNetworkInterfaces>(root, std::move(owned));
    }

    /// The name of every entry, in order.
    std::vector<std::string> names() {
        std::vector<std::string> result;
        for (const auto& entry : entries()) {
            result.push_back(entry.name);
        }
        return result;
    }

    std::vector<std::string> links() {
        std::vector<std::string> names;
        for (const auto& entry : entries()) {
            if (entry.address && entry.address->family == AddressFamily::link) {
                names.push_back(entry.name);
            }
        }
        return names;
    }

    std::optional<InterfaceStatistics> statistics(const std::string& name) {
        for (const auto& entry : entries()) {
            if (entry.name == name && entry.address->family == AddressFamily::link) {
                return entry.statistics;
            }
        }
        return std::nullopt;
    }

    std::span<const InterfaceEntry> entries() {
        return interfaces->getifaddrs().value_or(std::span<const InterfaceEntry>());
    }

    RecordedInterfaces* source = nullptr;
    std::unique_ptr<LinuxNetworkInterfaces> interfaces;
};

TEST(LinuxNetworkInterfaces, ListsOnlyLinksWithTrafficOfTheirOwn) {
    EXPECT_THAT(Machine(fixture("pc-coretemp")).links(), ElementsAre("lo", "eno1"));
    EXPECT_THAT(Machine(fixture("hybrid-laptop")).links(), ElementsAre("lo", "wlp0s20f3"));
    EXPECT_THAT(Machine(fixture("amd-desktop")).links(), ElementsAre("lo", "enp4s0", "enp5s0"));
    EXPECT_THAT(Machine(fixture("vm")).links(), ElementsAre("lo", "eth0"));
    EXPECT_THAT(Machine(fixture("container")).links(), ElementsAre("lo", "eth0"));
}

TEST(LinuxNetworkInterfaces, CountsATunnelWithoutAHardwareAddressWhenItIsAlone) {
    TemporaryTree tree;
    tree.copyFrom("hybrid-laptop")
        .write("/getifaddrs",
               "lo 0x10049 link\nwlp0s20f3 0x1003 link\nwg0 0x100d1 null\nwg0 0x100d1 ipv4 10.8.0.2\n");
    Machine laptop(tree.root());

    EXPECT_THAT(laptop.links(), ElementsAre("lo", "wlp0s20f3", "wg0"));
    ASSERT_TRUE(laptop.statistics("wg0"));
    EXPECT_EQ(laptop.statistics("wg0")->receivedBytes, 5123456U);
}

TEST(LinuxNetworkInterfaces, KeepsEveryAddressInTheSystemsOrder) {
    Machine desktop(fixture("amd-desktop"));

    EXPECT_THAT(desktop.names(), ElementsAre("lo", "enp4s0", "enp5s0", "lo", "lo", "bond0", "bond0.30", "bond0",
                                             "bond0.30", "virbr0", "virbr0", "vnet0"));
    const auto entries = desktop.interfaces->getifaddrs();
    EXPECT_EQ((*entries)[5].address->ipv4, (std::array<std::uint8_t, 4>{10, 0, 0, 17}));
    EXPECT_FALSE((*entries)[5].statistics);
    EXPECT_EQ((*entries)[1].flags & 0x49U, 0x41U);
}

TEST(LinuxNetworkInterfaces, CountsTrafficWithoutAllocating) {
    Machine desktop(fixture("amd-desktop"));
    ASSERT_TRUE(desktop.interfaces->getifaddrs());

    const auto before = test::allocationsOfThisThread();
    const auto entries = desktop.interfaces->getifaddrs();
    const auto after = test::allocationsOfThisThread();

    EXPECT_EQ(entries->size(), 12U);
    EXPECT_EQ(after, before);
}

TEST(LinuxNetworkInterfaces, ListsInterfacesThatOnlyRepeatTrafficLast) {
    TemporaryTree tree;
    tree.copyFrom("pc-coretemp");
    tree.write("/getifaddrs",
               "docker0 0x11043 link\neno1 0x11043 link\n"
               "docker0 0x11043 ipv4 172.17.0.1\neno1 0x11043 ipv4 192.168.1.20\n");

    EXPECT_THAT(Machine(tree.root()).names(), ElementsAre("eno1", "eno1", "docker0"));
}

TEST(LinuxNetworkInterfaces, ListsABridgeAboveHardwareBeforeContainerBridges) {
    TemporaryTree tree;
    tree.copyFrom("pc-coretemp")
        .write("/sys/class/net/br0/bridge/bridge_id", "")
        .write("/sys/class/net/br0/lower_eno1/type", "1\n")
        .write("/getifaddrs",
               "eno1 0x11043 link\ndocker0 0x11043 link\nbr0 0x11043 link\n"
               "docker0 0x11043 ipv4 172.17.0.1\nbr0 0x11043 ipv4 192.168.1.20\n");

    EXPECT_THAT(Machine(tree.root()).names(), ElementsAre("eno1", "br0", "docker0"));
}

/// A laptop whose wireless link a test removes while the tunnels on top of it stay.
class RoamingLaptop {
public:
    RoamingLaptop() { tree.copyFrom("hybrid-laptop"); }

    void setLink(bool isUp) {
        tree.write("/getifaddrs", std::string("lo 0x10049 link\nwlp0s20f3 ") + (isUp ? "0x11043" : "0x1003") +
                                      " link\nwg0 0x100d1 null\n");
        machine->source->changed = true;
    }

    double downloadAfter(std::uint64_t wireless, std::uint64_t tunnel) {
        tree.write("/proc/net/dev", fmt::format("lo: 1 0 0 0 0 0 0 0 1 0\nwlp0s20f3: {} 0 0 0 0 0 0 0 1 0\n"
                                                "wg0: {} 0 0 0 0 0 0 0 1 0\n",
                                                wireless, tunnel));
        clock.advance(std::chrono::seconds(1));
        return reader.read().downloadBytesPerSec;
    }

    TemporaryTree tree;
    test::ManualClock clock;
    std::unique_ptr<Machine> machine = std::make_unique<Machine>(tree.root());
    NetworkReader reader{*machine->interfaces, clock};
};

TEST(LinuxNetworkInterfaces, AReturningLinkAddsNoPastTraffic) {
    constexpr std::uint64_t days = 91'234'567'890;
    RoamingLaptop laptop;
    laptop.setLink(true);
    laptop.downloadAfter(days, 5'000'000);
    ASSERT_EQ(laptop.downloadAfter(days + 700, 5'000'000), 700);

    laptop.setLink(false);
    EXPECT_EQ(laptop.downloadAfter(days + 700, 5'000'000), 0);
    EXPECT_EQ(laptop.downloadAfter(days + 700, 5'000'100), 100);
    EXPECT_EQ(laptop.downloadAfter(days + 700, 5'000'300), 200);

    laptop.setLink(true);
    EXPECT_EQ(laptop.downloadAfter(days + 1'000, 5'000'300), 0);
    EXPECT_EQ(laptop.downloadAfter(days + 1'000, 5'000'300), 0);
    EXPECT_EQ(laptop.downloadAfter(days + 1'400, 5'000'300), 400);
    EXPECT_EQ(laptop.downloadAfter(days + 2'000, 5'000'300), 600);
}

TEST(LinuxNetworkInterfaces, SupportsMoreThan32Bits) {
    Machine pc(fixture("pc-coretemp"));

    const auto statistics = pc.statistics("eno1");

    ASSERT_TRUE(statistics);
    EXPECT_EQ(statistics->receivedBytes, 8123456789012U);
    EXPECT_EQ(statistics->sentBytes, 512345678901U);
}

TEST(LinuxNetworkInterfaces, RereadsCountersAlwaysButTheListOnlyWhenItChanged) {
    TemporaryTree tree;
    tree.copyFrom("container");
    Machine container(tree.root());
    ASSERT_EQ(container.statistics("eth0")->receivedBytes, 1234567U);

    tree.write("/proc/net/dev", "eth0: 2000000 0 0 0 0 0 0 0 3000000 0 0 0 0 0 0 0\n");
    EXPECT_EQ(container.statistics("eth0")->receivedBytes, 2000000U);
    EXPECT_EQ(container.source->lists, 1);

    tree.write("/getifaddrs", "lo 0x49 link\n");
    container.source->changed = true;
    EXPECT_THAT(container.links(), ElementsAre("lo"));
}

TEST(LinuxNetworkInterfaces, HasNoStatisticsWithoutCounters) {
    TemporaryTree tree;
    tree.copyFrom("container").remove("/proc/net/dev");
    Machine container(tree.root());

    EXPECT_THAT(container.links(), ElementsAre("lo", "eth0"));
    EXPECT_FALSE(container.statistics("eth0"));
    tree.write("/proc/net/dev", std::string(5000000, 'x'));
    EXPECT_FALSE(container.statistics("eth0"));
}

TEST(LinuxNetworkInterfaces, FailsWhenTheCallFailsAndRecovers) {
    TemporaryTree tree;
    tree.copyFrom("container").rename("/getifaddrs", "/away");
    Machine container(tree.root());
    EXPECT_FALSE(container.interfaces->getifaddrs());

    tree.rename("/away", "/getifaddrs");

    EXPECT_TRUE(container.interfaces->getifaddrs());
}

TEST(LinuxNetworkInterfaces, FormatsOnlyIpv4Addresses) {
    LinuxNetworkInterfaces interfaces(fixture("vm"), std::make_unique<RecordedInterfaces>(fixture("vm")));

    EXPECT_EQ(interfaces.getnameinfo({AddressFamily::ipv4, {192, 168, 1, 5}}), "192.168.1.5");
    EXPECT_FALSE(interfaces.getnameinfo({AddressFamily::link, {}}));
    EXPECT_FALSE(interfaces.getnameinfo({AddressFamily::other, {}}));
}

}  // namespace
}  // namespace kestro
