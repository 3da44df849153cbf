#pragma once

#include "core/platform/file_system_statistics.h"
#include "core/platform/process_info_service.h"

#include <gtest/gtest.h>

namespace kestro {

/// What every ProcessInfoService promises. A Subject has `port()`, on a machine with known memory and system.
template <typename Subject>
class ProcessInfoServiceContract : public testing::Test {
protected:
    Subject subject;
};
TYPED_TEST_SUITE_P(ProcessInfoServiceContract);

TYPED_TEST_P(ProcessInfoServiceContract, DescribesTheMachine) {
    ProcessInfoService& info = this->subject.port();

    EXPECT_GT(info.physicalMemory(), 0U);
    EXPECT_GE(info.thermalState(), 0);
    EXPECT_LE(info.thermalState(), 3);
    const auto version = info.operatingSystemVersion();
    EXPECT_FALSE(version.productName.empty());
    EXPECT_GT(version.major, 0);
    EXPECT_GE(version.minor, 0);
    EXPECT_GE(version.patch, 0);
}

REGISTER_TYPED_TEST_SUITE_P(ProcessInfoServiceContract, DescribesTheMachine);

/// What every FileSystemStatistics promises. A Subject has `port()`, on a machine with a root volume.
template <typename Subject>
class FileSystemStatisticsContract : public testing::Test {
protected:
    Subject subject;
};
TYPED_TEST_SUITE_P(FileSystemStatisticsContract);

TYPED_TEST_P(FileSystemStatisticsContract, MeasuresTheRootVolume) {
    const auto status = this->subject.port().statvfs("/");

    ASSERT_TRUE(status);
    EXPECT_GT(status->fragmentSize, 0U);
    EXPECT_GT(status->blocks, 0U);
    EXPECT_LE(status->availableBlocks, status->blocks);
}

TYPED_TEST_P(FileSystemStatisticsContract, HasNothingForAMissingPath) {
    EXPECT_FALSE(this->subject.port().statvfs("/no such folder"));
    EXPECT_FALSE(this->subject.port().statvfs(""));
}

REGISTER_TYPED_TEST_SUITE_P(FileSystemStatisticsContract, MeasuresTheRootVolume, HasNothingForAMissingPath);

}  // namespace kestro
