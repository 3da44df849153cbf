#include "platform/linux/interface_source.h"

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

TEST(KernelInterfaceSource, CountsAsChangedAtFirst) {
    EXPECT_TRUE(KernelInterfaceSource().hasChanged());
}

TEST(KernelInterfaceSource, CountsAsUnchangedWhileNothingIsAnnounced) {
    KernelInterfaceSource source;

    // Once is enough: a machine may be busy with its network at this very moment.
    int calls = 0;
    while (source.hasChanged() && calls < 1000) {
        ++calls;
    }

    EXPECT_LT(calls, 1000);
}

}  // namespace
}  // namespace kestro
