#include "platform/macos/mac_power_events.h"

#include "tests/platform/macos/failing_calls.h"
#include "tests/platform/macos/fakes/fake_mac.h"

#include <gtest/gtest.h>

#include <memory>

namespace kestro {
namespace {

using fakes::FakeMac;

void announce(FakeMac& mac) {
    mac.ioKit.announcePowerSources();
    mac.runLoop.runPending();
}

TEST(MacPowerEvents, CallsEveryWatchUntilItEnds) {
    FakeMac mac;
    MacPowerEvents events;
    int first = 0;
    int second = 0;
    auto one = events.watch([&] { ++first; });
    const auto two = events.watch([&] { ++second; });

    announce(mac);
    one.reset();
    announce(mac);

    EXPECT_EQ(first, 1);
    EXPECT_EQ(second, 2);
}

TEST(MacPowerEvents, SharesOneSourceBetweenAllWatches) {
    FakeMac mac;
    MacPowerEvents events;
    EXPECT_TRUE(mac.ioKit.powerSourceEvents.empty());

    for (int round = 0; round < 100; ++round) {
        const auto one = events.watch([] {});
        const auto two = events.watch([] {});
        EXPECT_TRUE(one && two);
    }

    EXPECT_EQ(mac.ioKit.powerSourceEvents.size(), 1U);
}

TEST(MacPowerEvents, CallsAWatchThatBeginsAfterTheLastOneEnded) {
    FakeMac mac;
    MacPowerEvents events;
    int calls = 0;
    events.watch([] {}).reset();
    announce(mac);
    const auto watch = events.watch([&] { ++calls; });

    announce(mac);

    EXPECT_EQ(calls, 1);
}

TEST(MacPowerEvents, TriesAgainAfterAFailure) {
    FakeMac mac;
    MacPowerEvents events;
    mac.failing = {"IOPSNotificationCreateRunLoopSource"};
    EXPECT_FALSE(events.watch([] {}));
    mac.failing.clear();
    int calls = 0;

    const auto watch = events.watch([&] { ++calls; });
    announce(mac);

    EXPECT_EQ(calls, 1);
}

TEST(MacPowerEvents, AWatchMayEndInItsOwnCall) {
    FakeMac mac;
    MacPowerEvents events;
    std::unique_ptr<PowerEventSource> watch;
    const auto witness = std::make_shared<int>(0);
    watch = events.watch([&watch, witness] {
        watch.reset();
        ++*witness;
    });

    announce(mac);
    announce(mac);

    EXPECT_EQ(*witness, 1);
    EXPECT_EQ(witness.use_count(), 1);
}

TEST(MacPowerEvents, HoldsNothingWhenCallsFail) {
    useWithFailingCalls([](FakeMac&) {},
                        [](FakeMac& mac) {
                            MacPowerEvents events;
                            const bool fails = mac.everythingFails || !mac.failing.empty();
                            const auto watch = events.watch([] {});
                            EXPECT_EQ(watch == nullptr, fails);
                        });
}

}  // namespace
}  // namespace kestro
