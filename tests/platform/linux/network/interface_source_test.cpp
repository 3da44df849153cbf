#include "platform/linux/network/interface_source.h"

#include <gtest/gtest.h>

#include <algorithm>

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
