#pragma once

#include "core/platform/power_events.h"

#include <gtest/gtest.h>

#include <memory>

namespace kestro {

/// What every PowerEvents promises. A Subject has `port()`, on a machine that announces changes; `announce()`,
/// after which the system has announced one; and `settle(done)`, which runs the main thread until `done` returns
/// true and nothing is left to deliver.
template <typename Subject>
class PowerEventsContract : public testing::Test {
protected:
    std::unique_ptr<PowerEventSource> count(int& calls) {
        return subject.port().watch([&calls] { ++calls; });
    }

    Subject subject;
};
TYPED_TEST_SUITE_P(PowerEventsContract);

TYPED_TEST_P(PowerEventsContract, CallsAfterEveryChange) {
    int calls = 0;
    const auto watch = this->count(calls);
    ASSERT_TRUE(watch);

    this->subject.announce();
    this->subject.settle([&] { return calls == 1; });
    EXPECT_EQ(calls, 1);
    this->subject.announce();
    this->subject.settle([&] { return calls == 2; });

    EXPECT_EQ(calls, 2);
}

TYPED_TEST_P(PowerEventsContract, IsSilentWithoutAChange) {
    int calls = 0;
    const auto watch = this->count(calls);
    ASSERT_TRUE(watch);

    this->subject.settle([] { return true; });

    EXPECT_EQ(calls, 0);
}

TYPED_TEST_P(PowerEventsContract, EndsEachWatchSeparately) {
    int first = 0;
    int second = 0;
    auto one = this->count(first);
    const auto two = this->count(second);
    ASSERT_TRUE(one && two);

    one.reset();
    this->subject.announce();
    this->subject.settle([&] { return second == 1; });

    EXPECT_EQ(first, 0);
    EXPECT_EQ(second, 1);
}

TYPED_TEST_P(PowerEventsContract, AWatchMayEndInItsOwnCall) {
    int calls = 0;
    int others = 0;
    std::unique_ptr<PowerEventSource> watch;
    watch = this->subject.port().watch([&] {
        ++calls;
        watch.reset();
    });
    const auto other = this->count(others);
    ASSERT_TRUE(watch && other);

    this->subject.announce();
    this->subject.settle([&] { return calls == 1 && others == 1; });
    this->subject.announce();
    this->subject.settle([&] { return others == 2; });

    EXPECT_EQ(calls, 1);
    EXPECT_EQ(others, 2);
}

REGISTER_TYPED_TEST_SUITE_P(PowerEventsContract, CallsAfterEveryChange, IsSilentWithoutAChange,
                            EndsEachWatchSeparately, AWatchMayEndInItsOwnCall);

}  // namespace kestro
