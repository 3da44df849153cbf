#pragma once

#include "core/platform/distributed_notifications.h"
#include "core/platform/power_assertions.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace kestro {

/// What every PowerAssertions promises. A Subject has `port()`, in a session that grants assertions; `held()`,
/// their number as the session sees it; and `refuse()`, after which it refuses them.
template <typename Subject>
class PowerAssertionsContract : public testing::Test {
protected:
    std::optional<PowerAssertionID> create() {
        return subject.port().create("PreventUserIdleDisplaySleep", 255, "Kestro Keep-Awake Active");
    }

    Subject subject;
};
TYPED_TEST_SUITE_P(PowerAssertionsContract);

TYPED_TEST_P(PowerAssertionsContract, HoldsEveryAssertionUntilItIsReleased) {
    const auto first = this->create();
    const auto second = this->create();

    ASSERT_TRUE(first && second);
    EXPECT_NE(*first, 0U);
    EXPECT_NE(*first, *second);
    EXPECT_EQ(this->subject.held(), 2);
    this->subject.port().release(*first);
    EXPECT_EQ(this->subject.held(), 1);
    this->subject.port().release(*second);
    EXPECT_EQ(this->subject.held(), 0);
}

TYPED_TEST_P(PowerAssertionsContract, IgnoresUnknownIdentifiers) {
    const auto id = this->create();
    ASSERT_TRUE(id);

    this->subject.port().release(0);
    this->subject.port().release(*id + 1);
    EXPECT_EQ(this->subject.held(), 1);
    this->subject.port().release(*id);
    this->subject.port().release(*id);

    EXPECT_EQ(this->subject.held(), 0);
}

TYPED_TEST_P(PowerAssertionsContract, HasNoIdentifierWhenRefused) {
    this->subject.refuse();

    EXPECT_FALSE(this->create());
    EXPECT_EQ(this->subject.held(), 0);
}

REGISTER_TYPED_TEST_SUITE_P(PowerAssertionsContract, HoldsEveryAssertionUntilItIsReleased,
                            IgnoresUnknownIdentifiers, HasNoIdentifierWhenRefused);

/// What every DistributedNotifications promises. A Subject has `port()`, and `settle(done)`, which runs the main
/// thread until `done` returns true and nothing is left to deliver.
template <typename Subject>
class DistributedNotificationsContract : public testing::Test {
protected:
    Subject subject;
};
TYPED_TEST_SUITE_P(DistributedNotificationsContract);

TYPED_TEST_P(DistributedNotificationsContract, DeliversToEveryObserverOfTheName) {
    int first = 0;
    int second = 0;
    int other = 0;
    DistributedNotifications& center = this->subject.port();
    const auto one = center.observe("kestro.notify.test", [&](const auto&) { ++first; });
    const auto two = center.observe("kestro.notify.test", [&](const auto&) { ++second; });
    const auto three = center.observe("kestro.notify.other", [&](const auto&) { ++other; });

    center.post("kestro.notify.test");
    EXPECT_EQ(first, 0) << "not inside the call";
    this->subject.settle([&] { return second == 1; });

    EXPECT_EQ(first, 1);
    EXPECT_EQ(second, 1);
    EXPECT_EQ(other, 0);
}

TYPED_TEST_P(DistributedNotificationsContract, CarriesUserInfo) {
    const NotificationUserInfo sent{{"flag", true}, {"number", 2.5}, {"tab", std::string("Keep-Awake")}};
    NotificationUserInfo received;
    DistributedNotifications& center = this->subject.port();
    const auto observer =
        center.observe("kestro.notify.test", [&](const NotificationUserInfo& userInfo) { received = userInfo; });

    center.post("kestro.notify.test", sent);
    this->subject.settle([&] { return !received.empty(); });

    EXPECT_EQ(received, sent);
}

TYPED_TEST_P(DistributedNotificationsContract, StopsWithTheSubscription) {
    int calls = 0;
    int others = 0;
    DistributedNotifications& center = this->subject.port();
    auto ended = center.observe("kestro.notify.test", [&](const auto&) { ++calls; });
    const auto other = center.observe("kestro.notify.test", [&](const auto&) { ++others; });

    ended.cancel();
    center.post("kestro.notify.test");
    this->subject.settle([&] { return others == 1; });

    EXPECT_EQ(calls, 0);
    EXPECT_EQ(others, 1);
}

REGISTER_TYPED_TEST_SUITE_P(DistributedNotificationsContract, DeliversToEveryObserverOfTheName, CarriesUserInfo,
                            StopsWithTheSubscription);

}  // namespace kestro
