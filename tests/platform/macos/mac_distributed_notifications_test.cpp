#include "platform/macos/mac_distributed_notifications.h"

#include "platform/macos/mac_clock.h"
#include "platform/macos/mac_run_loop.h"
#include "tests/platform/macos/failing_calls.h"
#include "tests/platform/macos/fakes/fake_mac.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace kestro {
namespace {

using fakes::FakeDictionary;
using fakes::FakeMac;
using fakes::FakeValue;
using fakes::OddObject;
using fakes::UnpairedSurrogate;

constexpr auto name = "kestro.notify.showSettings";

struct Center {
    FakeMac mac;
    MacClock clock;
    MacRunLoop runLoop{clock};
    MacDistributedNotifications port{runLoop};
    DistributedNotifications& notifications = port;
};

TEST(MacDistributedNotifications, DeliversPostingsToEveryObserverOfTheName) {
    Center center;
    std::vector<std::string> received;
    const auto first = center.notifications.observe(name, [&](const auto&) { received.emplace_back("first"); });
    const auto second = center.notifications.observe(name, [&](const auto&) { received.emplace_back("second"); });
    const auto other = center.notifications.observe("other", [&](const auto&) { received.emplace_back("other"); });

    center.notifications.post(name);
    EXPECT_TRUE(received.empty());
    center.mac.runLoop.runPending();

    EXPECT_EQ(received, (std::vector<std::string>{"first", "second"}));
    EXPECT_EQ(center.mac.runLoop.observers.size(), 2U) << "one registration for each name";
}

TEST(MacDistributedNotifications, CarriesTextBooleansAndNumbers) {
    Center center;
    const NotificationUserInfo sent{{"tab", std::string("Keep-Awake")}, {"flag", true}, {"number", 2.5}};
    NotificationUserInfo received;
    const auto observer = center.notifications.observe(name, [&](const auto& userInfo) { received = userInfo; });

    center.notifications.post(name, sent);
    center.mac.runLoop.runPending();

    EXPECT_EQ(received, sent);
}

TEST(MacDistributedNotifications, AcceptsWhateverOtherProcessesSend) {
    Center center;
    NotificationUserInfo received;
    const auto observer = center.notifications.observe(name, [&](const auto& userInfo) { received = userInfo; });

    center.mac.runLoop.postings.push_back({name,
                                           FakeDictionary{{"date", {OddObject{}}},
                                                          {"broken", {UnpairedSurrogate{}}},
                                                          {"integer", {std::int64_t{3}}},
                                                          {"data", {std::vector<std::uint8_t>{1}}}},
                                           true});
    center.mac.runLoop.runPending();

    const NotificationUserInfo expected{
        {"date", std::monostate{}}, {"broken", std::monostate{}}, {"integer", 3.0}, {"data", std::monostate{}}};
    EXPECT_EQ(received, expected);
}

TEST(MacDistributedNotifications, PostsWithoutUserInfoUnlessThereIsSome) {
    Center center;

    center.notifications.post(name);

    ASSERT_EQ(center.mac.runLoop.postings.size(), 1U);
    EXPECT_FALSE(center.mac.runLoop.postings.front().hasUserInfo);
}

TEST(MacDistributedNotifications, StopsWithTheSubscription) {
    Center center;
    int calls = 0;
    {
        const auto observer = center.notifications.observe(name, [&](const auto&) { ++calls; });
        center.notifications.post(name);
    }
    center.mac.runLoop.runPending();

    EXPECT_EQ(calls, 0);
}

TEST(MacDistributedNotifications, DeliversInANestedEventLoopOfAHandler) {
    Center center;
    int inner = 0;
    const auto second = center.notifications.observe("inner", [&](const auto&) { ++inner; });
    const auto first = center.notifications.observe(name, [&](const auto&) {
        center.notifications.post("inner");
        center.mac.runLoop.runPending();
        EXPECT_EQ(inner, 1);
    });

    center.notifications.post(name);
    center.mac.runLoop.runPending();

    EXPECT_EQ(inner, 1);
}

TEST(MacDistributedNotifications, HoldsNothingWhenCallsFail) {
    useWithFailingCalls([](FakeMac&) {},
                        [](FakeMac& mac) {
                            MacClock clock;
                            MacRunLoop runLoop(clock);
                            MacDistributedNotifications port(runLoop);
                            DistributedNotifications& notifications = port;
                            const auto observer = notifications.observe(name, [](const auto&) {});
                            notifications.post(name, {{"tab", std::string("text")}, {"number", 1.0}});
                            notifications.post(name);
                            mac.runLoop.runPending();
                        });
}

}  // namespace
}  // namespace kestro
