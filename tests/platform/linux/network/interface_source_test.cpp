#include "platform/linux/network/interface_source.h"

#include <gtest/gtest.h>
#include <ifaddrs.h>

#include <algorithm>
#include <string>

namespace kestro {
namespace {

TEST(KernelInterfaceSource, ListsTheLoopbackInterfaceAtLinkLevelWithoutStatistics) {
    KernelInterfaceSource source;

    const auto entries = source.list();

    ASSERT_TRUE(entries);
    const auto loopback = std::ranges::find_if(*entries, [](const InterfaceEntry& entry) {
        return (entry.flags & interfaceLoopback) != 0 && entry.address &&
               entry.address->family == AddressFamily::link;
    });
    ASSERT_NE(loopback, entries->end());
    EXPECT_FALSE(loopback->statistics);
}

TEST(InterfaceEntry, IsOfALinkWithoutAnAddressButWithData) {
    std::string name = "wg0";
    int data = 0;
    ifaddrs entry{};
    entry.ifa_name = name.data();
    entry.ifa_flags = 0x100d1;
    entry.ifa_data = &data;

    const auto link = interfaceEntry(entry);
    entry.ifa_data = nullptr;
    const auto neither = interfaceEntry(entry);

    ASSERT_TRUE(link.address);
    EXPECT_EQ(link.address->family, AddressFamily::link);
    EXPECT_EQ(link.flags, 0x100d1U);
    EXPECT_FALSE(neither.address);
}

TEST(KernelInterfaceSource, ReportsAChangeAtFirst) {
    EXPECT_TRUE(KernelInterfaceSource().hasChanged());
}

TEST(KernelInterfaceSource, ReportsNoChangeWithoutNotifications) {
    KernelInterfaceSource source;

    // One call without a change is enough: the machine's network may be busy right now.
    int calls = 0;
    while (source.hasChanged() && calls < 1000) {
        ++calls;
    }

    EXPECT_LT(calls, 1000);
}

}  // namespace
}  // namespace kestro
