#include "platform/macos/mac_file_system_statistics.h"

#include "tests/platform/macos/failing_calls.h"
#include "tests/platform/macos/fakes/fake_mac.h"

#include <gtest/gtest.h>

namespace kestro {
namespace {

using fakes::FakeMac;

TEST(MacFileSystemStatistics, CountsFragments) {
    FakeMac mac;
    mac.kernel.volumes["/"] = {4096, 242'745'344, 160'222'412};
    MacFileSystemStatistics fileSystem;

    const auto status = fileSystem.statvfs("/");

    ASSERT_TRUE(status);
    EXPECT_EQ(status->fragmentSize, 4096U);
    EXPECT_EQ(status->blocks, 242'745'344U);
    EXPECT_EQ(status->availableBlocks, 160'222'412U);
    EXPECT_FALSE(fileSystem.statvfs("/missing"));
}

TEST(MacFileSystemStatistics, NamesTheMount) {
    FakeMac mac;
    mac.kernel.mounts["/"] = {"/", "/dev/disk3s1s1", "apfs"};
    MacFileSystemStatistics fileSystem;

    EXPECT_EQ(fileSystem.statfs("/"), (FileSystemMount{"/", "/dev/disk3s1s1", "apfs"}));
    EXPECT_FALSE(fileSystem.statfs("/missing"));
}

TEST(MacFileSystemStatistics, RetriesInterruptedCalls) {
    FakeMac mac;
    mac.kernel.volumes["/"] = {4096, 100, 50};
    mac.kernel.interruptedCalls = 2;
    MacFileSystemStatistics fileSystem;

    EXPECT_TRUE(fileSystem.statvfs("/"));
}

TEST(MacFileSystemStatistics, HasNoResultWhenTheCallFails) {
    useWithFailingCalls(
        [](FakeMac& mac) {
            mac.kernel.volumes["/"] = {4096, 100, 50};
            mac.kernel.mounts["/"] = {"/", "/dev/disk3s1s1", "apfs"};
        },
        [](FakeMac& mac) {
            MacFileSystemStatistics fileSystem;
            const auto fails = [&](const char* name) { return mac.everythingFails || mac.failing.contains(name); };
            EXPECT_EQ(fileSystem.statvfs("/").has_value(), !fails("statvfs"));
            EXPECT_EQ(fileSystem.statfs("/").has_value(), !fails("statfs"));
        });
}

}  // namespace
}  // namespace kestro
