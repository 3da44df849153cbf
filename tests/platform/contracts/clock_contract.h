#pragma once

#include "core/platform/clock.h"

#include <gtest/gtest.h>

#include <chrono>

namespace kestro {

/// What every Clock promises. A Subject has `port()`, with a clock of the time since boot; and `pass()`, which
/// lets some time pass.
template <typename Subject>
class ClockContract : public testing::Test {
protected:
    Subject subject;
};
TYPED_TEST_SUITE_P(ClockContract);

TYPED_TEST_P(ClockContract, MonotonicTimeGoesOn) {
    auto last = this->subject.port().monotonicNow();
    for (int step = 0; step < 100; ++step) {
        this->subject.pass();
        const auto now = this->subject.port().monotonicNow();
        ASSERT_GT(now, last);
        last = now;
    }
}

TYPED_TEST_P(ClockContract, TimeSinceBootLastsAsLong) {
    const Clock& clock = this->subject.port();
    const auto bootBefore = clock.sinceBoot();
    ASSERT_TRUE(bootBefore);
    const auto before = clock.monotonicNow();

    this->subject.pass();
    const auto elapsed = clock.monotonicNow() - before;

    EXPECT_GE(*bootBefore, std::chrono::nanoseconds(0));
    EXPECT_GE(*clock.sinceBoot() - *bootBefore, elapsed);
}

REGISTER_TYPED_TEST_SUITE_P(ClockContract, MonotonicTimeGoesOn, TimeSinceBootLastsAsLong);

}  // namespace kestro
