#include "core/telemetry/disk_reader.h"

#include "platform/simulated/simulated_file_system_statistics.h"

#include <gtest/gtest.h>

namespace kestro {
namespace {

TEST(DiskReader, CountsSpaceReservedForTheSuperuserAsUsed) {
    SimulatedFileSystemStatistics fileSystem;
    fileSystem.root = {.fragmentSize = 4096, .blocks = 1000, .availableBlocks = 400};

    const DiskTelemetry record = DiskReader(fileSystem).read();

    EXPECT_EQ(record.totalBytes, 4'096'000u);
    EXPECT_EQ(record.freeBytes, 1'638'400u);
    EXPECT_EQ(record.usedBytes, 2'457'600u);
    EXPECT_DOUBLE_EQ(record.usedPercentage(), 60);
    EXPECT_EQ(record.volumeName, "Macintosh HD");
    EXPECT_EQ(record.fileSystem, "APFS");
}

TEST(DiskReader, SupportsMoreThanThirtyTwoBits) {
    SimulatedFileSystemStatistics fileSystem;
    fileSystem.root = {.fragmentSize = 65536, .blocks = 0xFFFFFFFF, .availableBlocks = 1};

    EXPECT_EQ(DiskReader(fileSystem).read().totalBytes, 0xFFFFFFFFull * 65536);
}

TEST(DiskReader, ReadsZeroUsedWhenMoreIsAvailableThanTheTotal) {
    SimulatedFileSystemStatistics fileSystem;
    fileSystem.root = {.fragmentSize = 512, .blocks = 10, .availableBlocks = 11};

    const DiskTelemetry record = DiskReader(fileSystem).read();

    EXPECT_EQ(record.usedBytes, 0u);
    EXPECT_EQ(record.freeBytes, 5632u);
}

TEST(DiskReader, SaysWhichFileSystemWasMeasured) {
    SimulatedFileSystemStatistics fileSystem;
    EXPECT_FALSE(DiskReader(fileSystem).read().mount);

    fileSystem.mount = {"/var", "/dev/nvme0n1p3", "btrfs"};

    EXPECT_EQ(DiskReader(fileSystem).read().mount, (FileSystemMount{"/var", "/dev/nvme0n1p3", "btrfs"}));
}

TEST(DiskReader, ReadsZerosWithTheFixedNamesWhenTheCallFails) {
    SimulatedFileSystemStatistics fileSystem;
    fileSystem.failure.always();

    EXPECT_EQ(DiskReader(fileSystem).read(), (DiskTelemetry{0, 0, 0, "Macintosh HD", "APFS"}));
}

}  // namespace
}  // namespace kestro
