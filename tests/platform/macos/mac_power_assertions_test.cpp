#include "platform/macos/mac_power_assertions.h"

#include "tests/platform/macos/failing_calls.h"
#include "tests/platform/macos/fakes/fake_mac.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace kestro {
namespace {

using fakes::FakeMac;

TEST(MacPowerAssertions, CreatesTheAssertionAsRequested) {
    FakeMac mac;
    MacPowerAssertions assertions;

    const auto id = assertions.create("PreventUserIdleDisplaySleep", 255, "Kestro Keep-Awake Active");

    ASSERT_TRUE(id);
    const auto& held = mac.ioKit.assertions.at(*id);
    EXPECT_EQ(held.type, "PreventUserIdleDisplaySleep");
    EXPECT_EQ(held.level, 255U);
    EXPECT_EQ(held.name, "Kestro Keep-Awake Active");
}

TEST(MacPowerAssertions, ReleasesOnceAndIgnoresUnknownIdentifiers) {
    FakeMac mac;
    MacPowerAssertions assertions;
    const auto id = assertions.create("PreventUserIdleSystemSleep", 255, "test").value();

    assertions.release(id);
    assertions.release(id);
    assertions.release(0);
    assertions.release(4711);

    expectNothingHeld(mac);
}

TEST(MacPowerAssertions, HasNoIdentifierWhenRefused) {
    FakeMac mac;
    mac.ioKit.refusesAssertions = true;
    MacPowerAssertions assertions;

    EXPECT_FALSE(assertions.create("PreventUserIdleSystemSleep", 255, "test"));
    expectNothingHeld(mac);
}

TEST(MacPowerAssertions, ReportsWhatBecameOfTheNewestRequest) {
    using State = PowerAssertionReport::State;
    FakeMac mac;
    MacPowerAssertions assertions;
    std::vector<State> states;
    assertions.setReportHandler([&] { states.push_back(assertions.report().state); });

    const auto first = assertions.create("PreventUserIdleSystemSleep", 255, "first").value();
    EXPECT_EQ(assertions.report().holders, std::vector<std::string>{"macOS"});
    const auto second = assertions.create("PreventUserIdleSystemSleep", 255, "second").value();
    assertions.release(first);
    EXPECT_EQ(assertions.report().state, State::held);
    assertions.release(second);
    mac.ioKit.refusesAssertions = true;
    assertions.create("PreventUserIdleSystemSleep", 255, "third");

    EXPECT_EQ(states, (std::vector<State>{State::held, State::held, State::none, State::refused}));
}

TEST(MacPowerAssertions, ReleasesEverythingInTheEnd) {
    FakeMac mac;
    {
        MacPowerAssertions assertions;
        assertions.create("PreventUserIdleSystemSleep", 255, "one");
        assertions.create("PreventUserIdleSystemSleep", 255, "two");
        EXPECT_EQ(mac.ioKit.assertions.size(), 2U);
    }
    expectNothingHeld(mac);
}

TEST(MacPowerAssertions, HoldsNothingWhenCallsFail) {
    useWithFailingCalls([](FakeMac&) {},
                        [](FakeMac& mac) {
                            MacPowerAssertions assertions;
                            const bool fails = mac.everythingFails || !mac.failing.empty();
                            const auto id = assertions.create("PreventUserIdleSystemSleep", 255, "test");
                            EXPECT_EQ(id.has_value(), !fails);
                            assertions.create("PreventUserIdleDisplaySleep", 255, "test");
                            assertions.release(id.value_or(0));
                        });
}

}  // namespace
}  // namespace kestro
