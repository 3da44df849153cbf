#pragma once

#include "core/platform/network_interfaces.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <vector>

namespace kestro {

/// What every NetworkInterfaces promises. A Subject has `port()`, on a machine with the loopback and another
/// interface that is up and has an IPv4 address, and `fail()`, after which listing them fails.
template <typename Subject>
class NetworkInterfacesContract : public testing::Test {
protected:
    std::vector<InterfaceEntry> entries() {
        const auto listed = subject.port().getifaddrs().value();
        return {listed.begin(), listed.end()};
    }

    Subject subject;
};
TYPED_TEST_SUITE_P(NetworkInterfacesContract);

TYPED_TEST_P(NetworkInterfacesContract, NamesEveryEntryInAStableOrder) {
    const auto first = this->entries();
    const auto second = this->entries();

    ASSERT_EQ(first.size(), second.size());
    for (std::size_t index = 0; index < first.size(); ++index) {
        EXPECT_FALSE(first[index].name.empty());
        EXPECT_EQ(first[index].name, second[index].name);
    }
}

TYPED_TEST_P(NetworkInterfacesContract, CountsTrafficAtLinkLevelOnly) {
    const auto entries = this->entries();

    EXPECT_TRUE(std::ranges::any_of(entries, [](const auto& entry) { return entry.statistics.has_value(); }));
    for (const auto& entry : entries) {
        if (entry.statistics) {
            ASSERT_TRUE(entry.address) << entry.name;
            EXPECT_EQ(entry.address->family, AddressFamily::link) << entry.name;
        }
    }
}

TYPED_TEST_P(NetworkInterfacesContract, MarksTheLoopback) {
    for (const auto& entry : this->entries()) {
        const bool isLocal =
            entry.address && entry.address->family == AddressFamily::ipv4 && entry.address->ipv4[0] == 127;
        EXPECT_TRUE(!isLocal || (entry.flags & interfaceLoopback) != 0) << entry.name;
    }
}

TYPED_TEST_P(NetworkInterfacesContract, HasTheAddressOfAnActiveInterface) {
    constexpr auto active = interfaceUp | interfaceRunning;

    const auto entries = this->entries();

    EXPECT_TRUE(std::ranges::any_of(entries, [](const auto& entry) {
        return (entry.flags & (active | interfaceLoopback)) == active && entry.address &&
               entry.address->family == AddressFamily::ipv4;
    }));
}

TYPED_TEST_P(NetworkInterfacesContract, FormatsIPv4AddressesAsNumbers) {
    NetworkInterfaces& interfaces = this->subject.port();

    EXPECT_EQ(interfaces.getnameinfo({AddressFamily::ipv4, {192, 168, 1, 5}}), "192.168.1.5");
    EXPECT_EQ(interfaces.getnameinfo({AddressFamily::ipv4, {0, 0, 0, 255}}), "0.0.0.255");
    EXPECT_FALSE(interfaces.getnameinfo({AddressFamily::link, {}}));
    EXPECT_FALSE(interfaces.getnameinfo({AddressFamily::other, {}}));
}

TYPED_TEST_P(NetworkInterfacesContract, HasNothingWhenTheCallFails) {
    this->subject.fail();

    EXPECT_FALSE(this->subject.port().getifaddrs());
}

REGISTER_TYPED_TEST_SUITE_P(NetworkInterfacesContract, NamesEveryEntryInAStableOrder, CountsTrafficAtLinkLevelOnly,
                            MarksTheLoopback, HasTheAddressOfAnActiveInterface, FormatsIPv4AddressesAsNumbers,
                            HasNothingWhenTheCallFails);

}  // namespace kestro
