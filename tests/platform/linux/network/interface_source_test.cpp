#include "platform/linux/network/interface_source.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <linux/if_tun.h>
#include <net/if.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>

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

constexpr int mayNot = 77;

/// Creates a tun device in a network namespace of this process's own, and looks for its link. Returns an exit
/// status: success, failure or `mayNot`.
int lookForATun() {
    ifreq request{};
    std::strncpy(request.ifr_name, "tun7", IFNAMSIZ - 1);
    request.ifr_flags = IFF_TUN | IFF_NO_PI;
    if (::unshare(CLONE_NEWNET) != 0 && ::unshare(CLONE_NEWUSER | CLONE_NEWNET) != 0) {
        return mayNot;
    }
    // A device belongs to the namespace in which it was opened.
    const int tun = ::open("/dev/net/tun", O_RDWR | O_CLOEXEC);
    if (::ioctl(tun, TUNSETIFF, &request) != 0) {
        return mayNot;
    }
    const auto entries = KernelInterfaceSource().list();
    const bool isListed =
        entries && std::ranges::any_of(*entries, [](const InterfaceEntry& entry) {
            return entry.name == "tun7" && entry.address && entry.address->family == AddressFamily::link;
        });
    return isListed ? EXIT_SUCCESS : EXIT_FAILURE;
}

TEST(KernelInterfaceSource, ListsTheLinkOfAnInterfaceWithoutAHardwareAddress) {
    const pid_t child = ::fork();
    if (child == 0) {
        ::_exit(lookForATun());
    }
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFEXITED(status));
    if (WEXITSTATUS(status) == mayNot) {
        GTEST_SKIP() << "may not create a network device here";
    }
    EXPECT_EQ(WEXITSTATUS(status), EXIT_SUCCESS);
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
