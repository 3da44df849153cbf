#pragma once

#include "core/platform/system_control.h"

#include <gtest/gtest.h>

namespace kestro {

/// What every SystemControl promises. A Subject has `port()`, on a machine with performance and efficiency cores
/// and swap.
template <typename Subject>
class SystemControlContract : public testing::Test {
protected:
    Subject subject;
};
TYPED_TEST_SUITE_P(SystemControlContract);

TYPED_TEST_P(SystemControlContract, DescribesTheClusters) {
    SystemControl& system = this->subject.port();

    EXPECT_GE(system.sysctlByNameInt32("hw.perflevel0.physicalcpu"), 1);
    EXPECT_GE(system.sysctlByNameInt32("hw.perflevel1.physicalcpu"), 1);
    EXPECT_EQ(system.sysctlByNameText("hw.perflevel0.name"), "Performance");
    EXPECT_EQ(system.sysctlByNameText("hw.perflevel1.name"), "Efficiency");
}

TYPED_TEST_P(SystemControlContract, NamesTheMachine) {
    const auto model = this->subject.port().sysctlByNameText("hw.model");

    ASSERT_TRUE(model);
    EXPECT_FALSE(model->empty());
    EXPECT_EQ(model->find('\0'), model->npos);
}

TYPED_TEST_P(SystemControlContract, HasAPressureLevel) {
    const auto level = this->subject.port().sysctlByNameInt32("kern.memorystatus_vm_pressure_level");

    ASSERT_TRUE(level);
    EXPECT_TRUE(*level == 1 || *level == 2 || *level == 4) << *level;
}

TYPED_TEST_P(SystemControlContract, UsesNoMoreSwapThanThereIs) {
    const auto usage = this->subject.port().swapUsage();

    ASSERT_TRUE(usage);
    EXPECT_LE(usage->used, usage->total);
}

TYPED_TEST_P(SystemControlContract, KnowsTheBootTime) {
    const auto time = this->subject.port().bootTime();

    ASSERT_TRUE(time);
    EXPECT_GT(time->seconds, 0);
    EXPECT_GE(time->microseconds, 0);
    EXPECT_LT(time->microseconds, 1'000'000);
}

TYPED_TEST_P(SystemControlContract, HasNoValueUnderAnUnknownName) {
    SystemControl& system = this->subject.port();

    for (const char* name : {"", "hw.perflevel7.physicalcpu", "kern.no_such_name"}) {
        EXPECT_FALSE(system.sysctlByNameInt32(name)) << name;
        EXPECT_FALSE(system.sysctlByNameText(name)) << name;
    }
}

TYPED_TEST_P(SystemControlContract, KeepsIntegersAndTextApart) {
    SystemControl& system = this->subject.port();

    EXPECT_FALSE(system.sysctlByNameInt32("hw.perflevel0.name"));
    EXPECT_FALSE(system.sysctlByNameInt32("hw.model"));
}

REGISTER_TYPED_TEST_SUITE_P(SystemControlContract, DescribesTheClusters, NamesTheMachine, HasAPressureLevel,
                            UsesNoMoreSwapThanThereIs, KnowsTheBootTime, HasNoValueUnderAnUnknownName,
                            KeepsIntegersAndTextApart);

}  // namespace kestro
