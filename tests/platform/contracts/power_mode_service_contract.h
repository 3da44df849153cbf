#pragma once

#include "core/platform/power_mode_service.h"

#include <gtest/gtest.h>

namespace kestro {

/// What every PowerModeService promises. A Subject has `port()`, on a machine that offers every mode;
/// `failSwitch()`, after which a switch to low power has failed for lack of consent; `succeedSwitch()`, after
/// which one has happened; and `settle(done)`, which runs the main thread until `done` returns true.
template <typename Subject>
class PowerModeServiceContract : public testing::Test {
protected:
    bool hasFailed() { return subject.port().conditions().failedSwitch.has_value(); }

    void fail() {
        subject.failSwitch();
        subject.settle([this] { return hasFailed(); });
    }

    void succeed() {
        subject.succeedSwitch();
        subject.settle([this] { return !hasFailed(); });
    }

    Subject subject;
};
TYPED_TEST_SUITE_P(PowerModeServiceContract);

TYPED_TEST_P(PowerModeServiceContract, StartsWithoutAFailedSwitch) {
    EXPECT_FALSE(this->hasFailed());
    EXPECT_TRUE(this->subject.port().conditions().isOffered[0]);
}

TYPED_TEST_P(PowerModeServiceContract, RemembersAFailedSwitchUntilOneHappens) {
    this->fail();

    const PowerModeConditions::FailedSwitch expected{1, PowerModeConditions::Failure::denied};
    EXPECT_EQ(this->subject.port().conditions().failedSwitch, expected);
    this->succeed();
    EXPECT_FALSE(this->hasFailed());
}

TYPED_TEST_P(PowerModeServiceContract, CallsTheHandlerOnceTheConditionsHaveChanged) {
    int failures = 0;
    this->subject.port().setConditionsHandler([&] { failures += this->hasFailed() ? 1 : 0; });

    this->fail();

    EXPECT_GE(failures, 1);
}

TYPED_TEST_P(PowerModeServiceContract, HasOneHandler) {
    int first = 0;
    int second = 0;
    PowerModeService& service = this->subject.port();
    service.setConditionsHandler([&] { ++first; });
    service.setConditionsHandler([&] { ++second; });

    this->fail();
    const int before = second;
    service.setConditionsHandler({});
    this->succeed();

    EXPECT_EQ(first, 0);
    EXPECT_GE(before, 1);
    EXPECT_EQ(second, before);
}

REGISTER_TYPED_TEST_SUITE_P(PowerModeServiceContract, StartsWithoutAFailedSwitch,
                            RemembersAFailedSwitchUntilOneHappens, CallsTheHandlerOnceTheConditionsHaveChanged,
                            HasOneHandler);

}  // namespace kestro
