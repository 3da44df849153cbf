#include "platform/desktop/bus_probe.h"

#include "tests/support/private_bus.h"
#include "tests/support/silent_socket.h"
#include "tests/support/temporary_directory.h"

#include <fmt/format.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include <stop_token>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace kestro {
namespace {

using namespace std::chrono_literals;

TEST(BusProbe, FindsARunningBus) {
    const PrivateBus bus;

    EXPECT_TRUE(BusProbe(bus.address().toStdString()).answersWithin(20s));
}

TEST(BusProbe, FindsThatABusIsGone) {
    PrivateBus bus;
    bus.kill();

    EXPECT_FALSE(BusProbe(bus.address().toStdString()).answersWithin(20s));
    EXPECT_FALSE(BusProbe("unix:path=/nonexistent").answersWithin(20s));
    EXPECT_FALSE(BusProbe("unix:path=/" + std::string(500, 'x')).answersWithin(20s));
}

TEST(BusProbe, WaitsNoLongerThanItsBoundForABusThatNeverAnswers) {
    const TemporaryDirectory directory;
    const SilentSocket byPath(directory / "silent bus");
    const std::string abstract = fmt::format("kestro-probe-{}", ::getpid());
    const SilentSocket byName('\0' + abstract);

    EXPECT_FALSE(BusProbe("unix:path=" + (directory / "silent%20bus") + ",guid=1").answersWithin(20ms));
    BusProbe probe("unix:abstract=" + abstract);
    EXPECT_FALSE(probe.answersWithin(0ms));
    EXPECT_TRUE(probe.isUnanswered());
}

TEST(BusProbe, DoesNotBlockWhenItsSocketIsFull) {
    const TemporaryDirectory directory;
    const SilentSocket busy(directory / "bus");
    std::vector<BusProbe> others;
    for (int caller = 0; caller < 20; ++caller) {
        others.emplace_back("unix:path=" + (directory / "bus"));
    }

    EXPECT_FALSE(BusProbe("unix:path=" + (directory / "bus")).answersWithin(0ms));
}

TEST(BusProbe, WaitsForAPlaceInTheQueueOfABusyBus) {
    const TemporaryDirectory directory;
    const SilentSocket busy(directory / "bus");
    const std::string address = "unix:path=" + (directory / "bus");
    const std::vector<BusProbe> others = [&] {
        std::vector<BusProbe> made;
        for (int caller = 0; caller < 20; ++caller) {
            made.emplace_back(address);
        }
        return made;
    }();
    BusProbe probe(address);
    ASSERT_FALSE(probe.answersWithin(0ms));

    const std::jthread bus([&busy](const std::stop_token& stop) {
        std::vector<Descriptor> callers;
        while (!stop.stop_requested()) {
            if (Descriptor caller = busy.accept(10); caller.isOpen()) {
                ::send(caller.get(), "OK\r\n", 4, MSG_NOSIGNAL);
                callers.push_back(std::move(caller));
            }
        }
    });

    EXPECT_TRUE(probe.answersWithin(20s));
}

TEST(BusProbe, LeavesOtherAddressesToTheToolkit) {
    for (const char* address :
         {"", "autolaunch:", "tcp:host=localhost,port=1", "unix:runtime=yes", "unix:path=%2", "unix:path=%zz"}) {
        EXPECT_TRUE(BusProbe(address).answersWithin(0ms)) << address;
    }
}

}  // namespace
}  // namespace kestro
