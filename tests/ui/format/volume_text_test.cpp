#include "ui/format/volume_text.h"

#include <gtest/gtest.h>

namespace kestro {
namespace {

TEST(VolumeText, GivesTheMountPointTheDeviceAndTheFileSystem) {
    DiskTelemetry disk = DiskTelemetry::initial();
    EXPECT_EQ(volumeText(disk), QString());

    disk.mount = FileSystemMount{"/", "/dev/mapper/%1-root", "ext4"};

    EXPECT_EQ(volumeText(disk), QStringLiteral("/ on /dev/mapper/%1-root (ext4)"));
}

}  // namespace
}  // namespace kestro
