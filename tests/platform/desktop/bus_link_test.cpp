#include "platform/desktop/bus_link.h"

#include "tests/support/event_waiting.h"
#include "tests/support/private_bus.h"

#include <gtest/gtest.h>

namespace kestro {
namespace {

using namespace std::chrono_literals;

TEST(BusLink, ConnectsLaterToABusThatAnswersLate) {
    PrivateBus bus;
    int attempts = 0;
    BusLink link(
        PrivateBus::none(), [&] { return ++attempts < 3 ? PrivateBus::none() : bus.connect(); }, 1ms);

    link.connectLater(1ms);

    EXPECT_TRUE(waitUntil([&] { return link.isConnected(); }));
    EXPECT_EQ(attempts, 3);
}

}  // namespace
}  // namespace kestro
