#include "core/base/published.h"

#include "tests/support/assignable.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace kestro {
namespace {

using test::Assignable;

TEST(Published, CallsEverySubscriberAfterTheValueHasChanged) {
    Assignable<int> value{1};
    std::vector<int> seen;
    const auto first = value.subscribe([&](const int&) { seen.push_back(value.get()); });
    const auto second = value.subscribe([&](const int& newest) { seen.push_back(newest * 10); });

    value.set(2);

    EXPECT_EQ(seen, (std::vector{2, 20}));
}

TEST(Published, DoesNotCallOnSubscribing) {
    Assignable<int> value{1};
    int calls = 0;

    const auto subscription = value.subscribe([&](const int&) { ++calls; });

    EXPECT_EQ(calls, 0);
}

TEST(Published, AlsoCallsForAnEqualValue) {
    Assignable<int> value{1};
    int calls = 0;
    const auto subscription = value.subscribe([&](const int&) { ++calls; });

    value.set(1);
    value.set(1);

    EXPECT_EQ(calls, 2);
}

TEST(Published, StopsCallingWhenTheSubscriptionIsDestroyed) {
    Assignable<int> value{1};
    int calls = 0;
    {
        const auto subscription = value.subscribe([&](const int&) { ++calls; });
        value.set(2);
    }

    value.set(3);

    EXPECT_EQ(calls, 1);
}

TEST(Published, AMovedSubscriptionStaysInOrder) {
    Assignable<int> value{1};
    int calls = 0;
    Subscription kept;
    {
        auto subscription = value.subscribe([&](const int&) { ++calls; });
        kept = std::move(subscription);
    }

    value.set(2);
    kept.cancel();
    value.set(3);

    EXPECT_EQ(calls, 1);
}

TEST(Published, ANestedAssignmentCallsEverySubscriberOncePerAssignmentAndNeverWithAStaleValue) {
    Assignable<int> value{0};
    std::vector<int> first;
    std::vector<int> second;
    const auto a = value.subscribe([&](const int& newest) {
        first.push_back(newest);
        if (first.size() == 1) {
            value.set(2);
        }
    });
    const auto b = value.subscribe([&](const int& newest) { second.push_back(newest); });

    value.set(1);

    EXPECT_EQ(first, (std::vector{1, 2}));
    EXPECT_EQ(second, (std::vector{2, 2}));
    EXPECT_EQ(value.get(), 2);
}

TEST(Published, TheReceivedReferenceOutlivesANestedAssignment) {
    Assignable<std::vector<std::string>> value;
    std::vector<std::string> seen;
    bool assigned = false;
    const auto subscription = value.subscribe([&](const std::vector<std::string>& texts) {
        for (const auto& text : texts) {
            if (!assigned) {
                assigned = true;
                value.set({});
            }
            seen.push_back(text);
        }
    });

    value.set({"a text too long for the small buffer of a string", "another one that is just as long"});

    EXPECT_EQ(seen.size(), 2u);
}

TEST(Published, SwappingInReturnsTheOldStorage) {
    Assignable<std::vector<int>> value{{1, 2, 3}};
    std::vector<int> next{4, 5, 6};
    const int* const storage = value.get().data();
    std::vector<int> seen;
    const auto subscription = value.subscribe([&](const std::vector<int>& newest) { seen = newest; });

    value.swapIn(next);

    EXPECT_EQ(seen, (std::vector{4, 5, 6}));
    EXPECT_EQ(value.get(), (std::vector{4, 5, 6}));
    EXPECT_EQ(next.data(), storage);
}

TEST(Published, SwappingInInsideANotificationKeepsTheReceivedValueAlive) {
    Assignable<std::vector<int>> value;
    std::vector<int> seen;
    const auto subscription = value.subscribe([&](const std::vector<int>& newest) {
        if (newest.size() == 2) {
            const int* const received = newest.data();
            std::vector<int> next{7};
            value.swapIn(next);
            EXPECT_TRUE(next.empty());
            seen.assign(received, received + 2);
        }
    });

    value.set({1, 2});

    EXPECT_EQ(seen, (std::vector{1, 2}));
    EXPECT_EQ(value.get(), (std::vector{7}));
}

TEST(Published, UnsubscribingInsideANotificationIsSafe) {
    Assignable<int> value{0};
    int calls = 0;
    Subscription self;
    Subscription other;
    self = value.subscribe([&](const int&) {
        ++calls;
        self.cancel();
        other.cancel();
    });
    other = value.subscribe([&](const int&) { ++calls; });

    value.set(1);
    value.set(2);

    EXPECT_EQ(calls, 1);
}

TEST(Published, ASubscriberThatJoinsInsideANotificationIsFirstCalledForTheNextOne) {
    Assignable<int> value{0};
    std::vector<int> late;
    Subscription joined;
    const auto subscription = value.subscribe([&](const int& newest) {
        if (newest == 1) {
            joined = value.subscribe([&](const int& seen) { late.push_back(seen); });
        }
    });

    value.set(1);
    value.set(2);

    EXPECT_EQ(late, (std::vector{2}));
}

TEST(Published, TheOwnerMayBeDestroyedInsideANotification) {
    auto value = std::make_unique<Assignable<std::string>>("before");
    std::string seen;
    int later = 0;
    const auto a = value->subscribe([&](const std::string& newest) {
        value.reset();
        seen = newest;
    });
    const auto b = value->subscribe([&](const std::string&) { ++later; });

    value->set("a text too long for the small buffer of a string");

    EXPECT_EQ(seen, "a text too long for the small buffer of a string");
    EXPECT_EQ(later, 0);
}

TEST(Published, ASubscriptionMayOutliveTheOwnerWithoutKeepingItAlive) {
    const auto captured = std::make_shared<int>(0);
    Subscription subscription;
    {
        Assignable<int> value{0};
        subscription = value.subscribe([captured](const int&) {});
    }

    EXPECT_EQ(captured.use_count(), 1);
    subscription.cancel();
    EXPECT_EQ(captured.use_count(), 1);
}

class Owner {
public:
    Published<int, Owner> value{1};
    void assign(int newest) { value.set(newest); }
};

TEST(Published, OnlyItsOwnerCanAssign) {
    Owner owner;
    int seen = 0;
    const auto subscription = owner.value.subscribe([&](const int& newest) { seen = newest; });

    owner.assign(5);

    EXPECT_EQ(seen, 5);
}

TEST(Announcer, ANestedAnnouncementReachesEverySubscriberAfterTheOuterOne) {
    Announcer<> announcer;
    std::string order;
    bool again = true;
    const auto a = announcer.subscribe([&] {
        order += 'a';
        if (again) {
            again = false;
            announcer.announce();
        }
    });
    const auto b = announcer.subscribe([&] { order += 'b'; });

    announcer.announce();

    EXPECT_EQ(order, "abab");
}

}  // namespace
}  // namespace kestro
