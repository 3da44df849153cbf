#include "platform/linux/machine/linux_file_system_statistics.h"

#include "tests/platform/linux/failing_reads.h"
#include "tests/platform/linux/support.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <fstream>
#include <sstream>
#include <string>

namespace kestro {
namespace {

using test::TemporaryTree;

TEST(LinuxFileSystemStatistics, DescribesAFileSystem) {
    TemporaryTree tree;
    tree.write("/home/file", "x");
    LinuxFileSystemStatistics statistics(tree.root());

    const auto status = statistics.statvfs("/home");

    ASSERT_TRUE(status);
    EXPECT_GT(status->fragmentSize, 0U);
    EXPECT_GT(status->blocks, 0U);
    EXPECT_LE(status->availableBlocks, status->blocks);
}

TEST(LinuxFileSystemStatistics, FailsForAMissingPath) {
    TemporaryTree tree;

    EXPECT_FALSE(LinuxFileSystemStatistics(tree.root()).statvfs("/none"));
    EXPECT_FALSE(LinuxFileSystemStatistics().statvfs(""));
}

TEST(LinuxFileSystemStatistics, NamesTheFileSystemOfTheRoot) {
    TemporaryTree tree;
    tree.write("/proc/self/mountinfo",
               "1 1 0:2 / / rw - rootfs rootfs rw\n"
               "28 1 259:2 / / rw,relatime shared:1 - ext4 /dev/nvme0n1p2 rw,errors=remount-ro\n");

    EXPECT_EQ(LinuxFileSystemStatistics(tree.root()).statfs("/"),
              (FileSystemMount{"/", "/dev/nvme0n1p2", "ext4"}));
}

TEST(LinuxFileSystemStatistics, DescribesTheDataOfAnImageBasedSystem) {
    TemporaryTree tree;
    tree.write("/sysroot/file", "x")
        .write("/proc/self/mountinfo",
               "60 1 0:31 / / ro,relatime - overlay composefs ro,lowerdir+=/run/lower,datadir+=/sysroot/objects\n"
               "61 60 252:4 / /sysroot ro,relatime - xfs /dev/vda4 rw,attr2\n");
    LinuxFileSystemStatistics statistics(tree.root());

    EXPECT_EQ(statistics.statfs("/"), (FileSystemMount{"/sysroot", "/dev/vda4", "xfs"}));
    EXPECT_TRUE(statistics.statvfs("/"));
}

TEST(LinuxFileSystemStatistics, FollowsChangesOfTheMounts) {
    TemporaryTree tree;
    tree.write("/proc/self/mountinfo", "28 1 8:2 / / rw - ext4 /dev/sda2 rw\n");
    LinuxFileSystemStatistics statistics(tree.root());
    ASSERT_EQ(statistics.statfs("/")->type, "ext4");

    tree.write("/proc/self/mountinfo", "28 1 8:2 / / rw - xfs /dev/sda2 rw\n");

    EXPECT_EQ(statistics.statfs("/")->type, "xfs");
}

TEST(LinuxFileSystemStatistics, FindsAFileSystemBehindTheLongLineOfAnOverlay) {
    TemporaryTree tree;
    const std::string first = "30 28 0:40 / /run rw - tmpfs tmpfs rw\n";
    const std::string overlay =
        "60 28 0:50 / /merged rw - overlay overlay rw,lowerdir=" + std::string(4000, 'l') + "\n";
    tree.write("/proc/self/mountinfo", first + overlay + "28 1 8:2 / / rw - ext4 /dev/sda2 rw\n");
    const test::PiecemealReads pieces(tree.root() + "/proc/self/mountinfo", first.size());
    LinuxFileSystemStatistics statistics(tree.root());

    EXPECT_EQ(statistics.statfs("/"), (FileSystemMount{"/", "/dev/sda2", "ext4"}));
}

TEST(LinuxFileSystemStatistics, ReadsATableOfManyThousandMounts) {
    TemporaryTree tree;
    std::string table;
    for (int number = 100; number < 20'100; ++number) {
        table += fmt::format("{} 28 0:50 / /containers/{}/root/merged rw,relatime - overlay overlay rw\n", number,
                             number);
    }
    ASSERT_GT(table.size(), std::size_t{1} << 20);
    tree.write("/proc/self/mountinfo", table + "28 1 8:2 / / rw - ext4 /dev/sda2 rw\n");
    LinuxFileSystemStatistics statistics(tree.root());

    EXPECT_EQ(statistics.statfs("/"), (FileSystemMount{"/", "/dev/sda2", "ext4"}));
}

TEST(LinuxFileSystemStatistics, KnowsNoFileSystemWithoutATable) {
    TemporaryTree tree;
    LinuxFileSystemStatistics statistics(tree.root());

    EXPECT_FALSE(statistics.statfs("/"));
    EXPECT_TRUE(statistics.statvfs("/"));
}

/// False in a folder that became the root by chroot.
bool isRootMounted() {
    std::ifstream table("/proc/self/mountinfo");
    for (std::string line; std::getline(table, line);) {
        std::istringstream fields(line);
        std::string point;
        // Number, parent, device and the mounted folder come first.
        for (int field = 0; field < 5; ++field) {
            fields >> point;
        }
        if (point == "/") {
            return true;
        }
    }
    return false;
}

TEST(LinuxFileSystemStatistics, ReadsTheRunningKernelsTable) {
    if (!isRootMounted()) {
        GTEST_SKIP() << "nothing is mounted at the root of this environment";
    }
    const auto mount = LinuxFileSystemStatistics().statfs("/");

    ASSERT_TRUE(mount);
    EXPECT_FALSE(mount->type.empty());
}

}  // namespace
}  // namespace kestro
