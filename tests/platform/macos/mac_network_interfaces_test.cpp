#include "platform/macos/mac_network_interfaces.h"

#include "tests/platform/macos/failing_calls.h"
#include "tests/platform/macos/fakes/fake_mac.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <net/if.h>
#include <net/if_types.h>
#include <sys/socket.h>

#include <span>
#include <string>
#include <vector>

namespace kestro {
namespace {

using fakes::FakeInterface;
using fakes::FakeMac;
using testing::ElementsAre;

constexpr unsigned int active = IFF_UP | IFF_RUNNING;

FakeInterface link(std::string name, std::uint32_t receivedBytes, std::uint32_t sentBytes,
                   std::uint8_t type = IFT_ETHER) {
    return {.name = std::move(name),
            .flags = active,
            .family = AF_LINK,
            .type = type,
            .receivedBytes = receivedBytes,
            .sentBytes = sentBytes};
}

FakeInterface ipv4(std::string name, std::array<std::uint8_t, 4> address) {
    return {.name = std::move(name), .flags = active, .family = AF_INET, .ipv4 = address};
}

std::vector<std::string> linkNames(std::span<const InterfaceEntry> entries) {
    std::vector<std::string> names;
    for (const auto& entry : entries) {
        if (entry.address && entry.address->family == AddressFamily::link) {
            names.push_back(entry.name);
        }
    }
    return names;
}

TEST(MacNetworkInterfaces, PassesEntriesOnInTheSystemsOrder) {
    FakeMac mac;
    mac.kernel.interfaces = {link("lo0", 7, 7, IFT_LOOP), ipv4("lo0", {127, 0, 0, 1}),
                             link("en0", 4'000'000'000, 2000), ipv4("en0", {192, 168, 1, 5})};
    mac.kernel.interfaces[0].flags |= IFF_LOOPBACK;
    MacNetworkInterfaces interfaces;

    const auto entries = interfaces.getifaddrs();

    ASSERT_TRUE(entries);
    ASSERT_EQ(entries->size(), 4U);
    EXPECT_EQ((*entries)[0].flags, interfaceUp | interfaceRunning | interfaceLoopback);
    EXPECT_EQ((*entries)[2].name, "en0");
    EXPECT_EQ((*entries)[2].address->family, AddressFamily::link);
    EXPECT_EQ((*entries)[2].statistics->receivedBytes, 4'000'000'000U);
    EXPECT_EQ((*entries)[2].statistics->sentBytes, 2000U);
    EXPECT_EQ((*entries)[3].address->family, AddressFamily::ipv4);
    EXPECT_THAT((*entries)[3].address->ipv4, ElementsAre(192, 168, 1, 5));
    EXPECT_FALSE((*entries)[3].statistics);
}

TEST(MacNetworkInterfaces, AcceptsEntriesWithoutAddressOrStatistics) {
    FakeMac mac;
    mac.kernel.interfaces = {{.name = "gif0", .flags = IFF_POINTOPOINT}, link("en1", 1, 1)};
    mac.kernel.interfaces.push_back({.name = "en1", .flags = active, .family = AF_INET6});
    mac.kernel.interfaces[1].hasStatistics = false;
    MacNetworkInterfaces interfaces;

    const auto entries = interfaces.getifaddrs();

    ASSERT_TRUE(entries);
    ASSERT_EQ(entries->size(), 3U);
    EXPECT_FALSE((*entries)[0].address);
    EXPECT_FALSE((*entries)[1].statistics);
    EXPECT_EQ((*entries)[2].address->family, AddressFamily::other);
}

TEST(MacNetworkInterfaces, OmitsLinksThatRepeatTraffic) {
    FakeMac mac;
    mac.kernel.interfaces = {link("en0", 1, 1),
                             link("bridge0", 1, 1, IFT_BRIDGE),
                             link("vlan0", 1, 1, IFT_L2VLAN),
                             link("bond0", 1, 1, IFT_IEEE8023ADLAG),
                             link("utun0", 1, 1, IFT_OTHER),
                             link("gif0", 1, 1, IFT_GIF),
                             link("stf0", 1, 1, IFT_STF),
                             ipv4("utun0", {10, 8, 0, 2}),
                             link("en7", 1, 1)};
    MacNetworkInterfaces interfaces;

    const auto entries = interfaces.getifaddrs();

    ASSERT_TRUE(entries);
    EXPECT_THAT(linkNames(*entries), ElementsAre("en0", "en7"));
    EXPECT_EQ(entries->size(), 3U) << "the tunnel keeps its address";
}

TEST(MacNetworkInterfaces, IsEmptyWithoutInterfaces) {
    FakeMac mac;
    MacNetworkInterfaces interfaces;

    const auto entries = interfaces.getifaddrs();

    ASSERT_TRUE(entries);
    EXPECT_TRUE(entries->empty());
}

TEST(MacNetworkInterfaces, FormatsOnlyIPv4Addresses) {
    FakeMac mac;
    MacNetworkInterfaces interfaces;

    EXPECT_EQ(interfaces.getnameinfo({AddressFamily::ipv4, {10, 0, 0, 255}}), "10.0.0.255");
    EXPECT_FALSE(interfaces.getnameinfo({AddressFamily::link, {}}));
    EXPECT_FALSE(interfaces.getnameinfo({AddressFamily::other, {}}));
}

TEST(MacNetworkInterfaces, FreesTheListWhateverFails) {
    useWithFailingCalls(
        [](FakeMac& mac) {
            mac.kernel.interfaces = {link("en0", 1, 1), ipv4("en0", {10, 0, 0, 2}), {.name = "gif0"}};
        },
        [](FakeMac& mac) {
            MacNetworkInterfaces interfaces;
            const bool fails = mac.everythingFails || mac.failing.contains("getifaddrs");
            EXPECT_EQ(interfaces.getifaddrs().has_value(), !fails);
            interfaces.getnameinfo({AddressFamily::ipv4, {10, 0, 0, 2}});
        });
}

}  // namespace
}  // namespace kestro
