#pragma once

#include "platform/linux/machine/mount_table.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace kestro {

/// Whether a file system holds an image that is full by nature: a read-only overlay (composefs), erofs, squashfs
/// and the like.
bool isImage(const Mount& mount);

/// The kernel's name of the block device behind a file system, such as "nvme0n1p2". Empty: none, or unknown.
std::string deviceName(const std::string& root, const Mount& mount);

/// The name of the whole disk on which a file system lies, such as "nvme0n1", found through partitions, mapped
/// devices and loop devices. Empty: none, or unknown.
std::string diskOf(const std::string& root, const std::vector<Mount>& mounts, const Mount& mount);

/// The file system whose space is the machine's: the root's, or if that is an image, the first of /sysroot, /var
/// and the largest writable file system, on the image's disk if one is there. `sizeOf` gives the size of a file
/// system by its mount point. Null: there is no root.
const Mount* storageVolume(const std::string& root, const std::vector<Mount>& mounts,
                           const std::function<std::uint64_t(const std::string& point)>& sizeOf);

}  // namespace kestro
