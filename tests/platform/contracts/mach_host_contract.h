#pragma once

#include "core/platform/mach_host.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace kestro {

/// What every MachHost promises. A Subject has `port()`, on a machine with processors and memory, and `fail()`,
/// after which every call fails.
template <typename Subject>
class MachHostContract : public testing::Test {
protected:
    Subject subject;
};
TYPED_TEST_SUITE_P(MachHostContract);

TYPED_TEST_P(MachHostContract, HasFourTicksForEachProcessor) {
    MachHost& host = this->subject.port();

    const auto load = host.hostProcessorInfo();

    ASSERT_TRUE(load);
    EXPECT_GE(load->processorCount, 1U);
    EXPECT_EQ(load->info.size(), std::size_t{load->processorCount} * 4);
    host.vmDeallocate(load->info.data(), load->info.size_bytes());
}

TYPED_TEST_P(MachHostContract, LendsSeveralArraysAtOnce) {
    MachHost& host = this->subject.port();
    const auto first = host.hostProcessorInfo();
    ASSERT_TRUE(first);
    const std::vector<std::int32_t> copy(first->info.begin(), first->info.end());

    const auto second = host.hostProcessorInfo();

    ASSERT_TRUE(second);
    EXPECT_NE(first->info.data(), second->info.data());
    EXPECT_TRUE(std::equal(copy.begin(), copy.end(), first->info.begin(), first->info.end()));
    host.vmDeallocate(first->info.data(), first->info.size_bytes());
    host.vmDeallocate(second->info.data(), second->info.size_bytes());
}

TYPED_TEST_P(MachHostContract, CountsPagesOfAKnownSize) {
    MachHost& host = this->subject.port();

    const auto statistics = host.hostStatistics64();
    const auto pageSize = host.hostPageSize();

    ASSERT_TRUE(statistics);
    EXPECT_GT(statistics->activeCount + statistics->wireCount, 0U);
    ASSERT_TRUE(pageSize);
    EXPECT_TRUE(std::has_single_bit(*pageSize));
}

TYPED_TEST_P(MachHostContract, HasNothingWhenItsCallsFail) {
    this->subject.fail();
    MachHost& host = this->subject.port();

    EXPECT_FALSE(host.hostProcessorInfo());
    EXPECT_FALSE(host.hostStatistics64());
}

REGISTER_TYPED_TEST_SUITE_P(MachHostContract, HasFourTicksForEachProcessor, LendsSeveralArraysAtOnce,
                            CountsPagesOfAKnownSize, HasNothingWhenItsCallsFail);

}  // namespace kestro
