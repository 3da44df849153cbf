#include "platform/linux/machine/storage_volume.h"

#include "tests/platform/linux/support.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <string>

namespace kestro {
namespace {

using test::TemporaryTree;

TEST(ParseMountInfo, ReadsTheFieldsOfEveryFileSystem) {
    const auto mounts = parseMountInfo(
        "28 1 259:2 / / rw,relatime shared:1 master:2 - ext4 /dev/nvme0n1p2 rw\n"
        "99 28 0:44 /home /media/my\\040disk ro,nosuid - btrfs /dev/sdb1 rw\n"
        "100 28 0:50 / /mnt rw - overlay overlay rw,lowerdir=/a,upperdir=/b,workdir=/c\n");

    EXPECT_EQ(mounts, (std::vector<Mount>{{"259:2", "/", "/dev/nvme0n1p2", "ext4", false, false},
                                          {"0:44", "/media/my disk", "/dev/sdb1", "btrfs", true, false},
                                          {"0:50", "/mnt", "overlay", "overlay", false, true}}));
}

TEST(ParseMountInfo, SkipsMalformedLines) {
    EXPECT_TRUE(parseMountInfo("").empty());
    EXPECT_TRUE(parseMountInfo("28 1 259:2 / / rw,relatime shared:1\n\n- - - - - -\n\xFF\xFE\n").empty());
    EXPECT_TRUE(parseMountInfo("28 1 8:1 / relative rw - ext4 /dev/sda1 rw\n").empty());
    EXPECT_EQ(parseMountInfo("28 1 8:1 / /a\\04 rw - ext4 /dev/sda1 rw").front().point, "/a\\04");
}

TEST(MountAt, FindsTheLastOfSeveralAtTheSamePlace) {
    const auto mounts = parseMountInfo("1 1 0:1 / / rw - rootfs none rw\n2 1 8:1 / / rw - ext4 /dev/sda1 rw\n");

    EXPECT_EQ(mountAt(mounts, "/")->type, "ext4");
    EXPECT_EQ(mountAt(mounts, "/var"), nullptr);
}

TEST(MountOf, FindsTheFileSystemThatContainsAPath) {
    const auto mounts =
        parseMountInfo("1 1 8:1 / / rw - ext4 /dev/sda1 rw\n2 1 8:2 / /var rw - xfs /dev/sda2 rw\n");

    EXPECT_EQ(mountOf(mounts, "/var/lib")->type, "xfs");
    EXPECT_EQ(mountOf(mounts, "/variety")->type, "ext4");
    EXPECT_EQ(mountOf({}, "/"), nullptr);
}

/// The mounted file systems of a machine and the sizes of some of them.
class StorageVolume : public testing::Test {
protected:
    std::string volume(const std::string& mountInfo, std::map<std::string, std::uint64_t> sizes = {}) {
        const auto mounts = parseMountInfo(mountInfo);
        const auto* const chosen =
            storageVolume(tree.root(), mounts, [&](const std::string& point) { return sizes[point]; });
        return chosen != nullptr ? chosen->point : "none";
    }

    /// Adds a block device; `path` is below /sys/devices.
    void addDevice(const std::string& path, const std::string& number, bool isPartition) {
        namespace fs = std::filesystem;
        const fs::path sys = fs::path(tree.root()) / "sys";
        const auto name = fs::path(path).filename();
        tree.write("/sys/devices/" + path + "/dev", number);
        if (isPartition) {
            tree.write("/sys/devices/" + path + "/partition", "1\n");
        }
        fs::create_directories(sys / "dev/block");
        fs::create_directories(sys / "class/block");
        fs::create_directory_symlink("../../devices/" + path, sys / "dev/block" / number);
        fs::create_directory_symlink("../../devices/" + path, sys / "class/block" / name);
    }

    TemporaryTree tree;
};

TEST_F(StorageVolume, IsTheRootOfAnOrdinarySystem) {
    EXPECT_EQ(volume("1 1 8:2 / / rw - ext4 /dev/sda2 rw\n2 1 8:3 / /var rw - ext4 /dev/sda3 rw\n"), "/");
    EXPECT_EQ(volume("1 1 0:30 / / rw - overlay overlay rw,lowerdir=/a,upperdir=/b,workdir=/c\n"), "/")
        << "a container or a live system writes to its upper layer";
    EXPECT_EQ(volume(""), "none");
}

// Fedora Atomic Desktops 42 and Bazzite (github.com/composefs/composefs/issues/420).
TEST_F(StorageVolume, IsTheSysrootOfAComposefsSystem) {
    EXPECT_EQ(
        volume("60 1 0:31 / / ro,relatime shared:1 - overlay composefs "
               "ro,seclabel,lowerdir+=/run/ostree/.private/cfsroot-lower,datadir+=/sysroot/ostree/repo/objects,"
               "redirect_dir=on,metacopy=on\n"
               "61 60 0:33 /root /sysroot ro,relatime - btrfs /dev/mapper/luks-1 rw,seclabel\n"
               "62 60 0:33 /root/ostree/deploy/fedora/var /var rw - btrfs /dev/mapper/luks-1 rw\n"),
        "/sysroot");
}

TEST_F(StorageVolume, IsVarWithoutASysroot) {
    EXPECT_EQ(volume("1 1 254:0 / / ro - erofs /dev/dm-0 ro\n2 1 8:4 / /var rw - ext4 /dev/sda4 rw\n"
                     "3 1 8:5 / /home rw - ext4 /dev/sda5 rw\n"),
              "/var");
    EXPECT_EQ(volume("1 1 7:0 / / ro - squashfs /dev/loop0 ro\n2 1 0:5 / /var rw - tmpfs tmpfs rw\n"
                     "3 1 179:2 / /storage rw - ext4 /dev/mmcblk0p2 rw\n",
                     {{"/storage", 1}}),
              "/storage");
    EXPECT_EQ(volume("1 1 7:0 / / ro - squashfs /dev/loop0 ro\n2 1 8:3 / /var ro - ext4 /dev/sda3 ro\n"
                     "3 1 8:4 / /data rw - ext4 /dev/sda4 rw\n",
                     {{"/data", 1}}),
              "/data");
}

// A loop device on the boot partition, and data on another partition of the same card; as on LibreELEC.
TEST_F(StorageVolume, IsTheLargestWritableFileSystemOfTheSameDisk) {
    addDevice("virtual/block/loop0", "7:0", false);
    tree.write("/sys/devices/virtual/block/loop0/loop/backing_file", "/flash/SYSTEM\n");
    addDevice("platform/mmc/block/mmcblk0", "179:0", false);
    addDevice("platform/mmc/block/mmcblk0/mmcblk0p1", "179:1", true);
    addDevice("platform/mmc/block/mmcblk0/mmcblk0p2", "179:2", true);
    addDevice("usb/block/sda", "8:0", false);
    addDevice("usb/block/sda/sda1", "8:1", true);
    const std::string mounts =
        "1 1 7:0 / / ro - squashfs /dev/loop0 ro\n2 1 179:1 / /flash rw - vfat /dev/mmcblk0p1 rw\n"
        "3 1 179:2 / /storage rw - ext4 /dev/mmcblk0p2 rw\n4 1 8:1 / /media/backup rw - ext4 /dev/sda1 rw\n";

    EXPECT_EQ(volume(mounts, {{"/flash", 500}, {"/storage", 30'000}, {"/media/backup", 4'000'000}}), "/storage");
}

TEST_F(StorageVolume, LooksThroughMappedDevices) {
    addDevice("pci/nvme/nvme0/nvme0n1", "259:0", false);
    addDevice("pci/nvme/nvme0/nvme0n1/nvme0n1p2", "259:2", true);
    addDevice("pci/nvme/nvme0/nvme0n1/nvme0n1p3", "259:3", true);
    addDevice("virtual/block/dm-0", "254:0", false);
    tree.write("/sys/devices/virtual/block/dm-0/slaves/nvme0n1p2/partition", "2\n");
    const auto mounts = parseMountInfo(
        "1 1 254:0 / / ro - erofs /dev/mapper/root ro\n"
        "2 1 0:40 / /data rw - btrfs /dev/nvme0n1p3 rw\n"
        "3 1 0:41 / /proc rw - proc proc rw\n");

    EXPECT_EQ(diskOf(tree.root(), mounts, mounts[0]), "nvme0n1");
    EXPECT_EQ(diskOf(tree.root(), mounts, mounts[1]), "nvme0n1") << "btrfs has a number of its own";
    EXPECT_EQ(diskOf(tree.root(), mounts, mounts[2]), "");
}

TEST_F(StorageVolume, IsTheImageIfNothingElseIsThere) {
    EXPECT_EQ(volume("1 1 11:0 / / ro - iso9660 /dev/sr0 ro\n2 1 0:5 / /tmp rw - tmpfs tmpfs rw\n"), "/");
}

TEST_F(StorageVolume, IgnoresFileSystemsHiddenByOthers) {
    EXPECT_EQ(volume("1 1 7:0 / / ro - squashfs /dev/loop0 ro\n2 1 8:1 / /data rw - ext4 /dev/sda1 rw\n"
                     "3 1 0:9 / /data rw - nfs4 server:/data rw\n",
                     {{"/data", 9}}),
              "/");
}

}  // namespace
}  // namespace kestro
