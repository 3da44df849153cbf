#pragma once

#include "core/platform/file_system_statistics.h"
#include "platform/linux/kernel/kernel_files.h"
#include "platform/posix/descriptor.h"

#include <cstddef>
#include <optional>
#include <string>

namespace kestro {

/// `statvfs` for a path below the root directory. Main thread. Blocks on a network file system whose server does
/// not respond, so pass only local paths.
///
/// Where "/" is a read-only image, which is always full, its figures are those of the file system that holds the
/// machine's data (see `storageVolume`). The mounted file systems are listed again only when the kernel announces
/// a change (proc_pid_mountinfo(5)).
class LinuxFileSystemStatistics final : public FileSystemStatistics {
public:
    /// `root` is the mount point of the machine's file system.
    explicit LinuxFileSystemStatistics(std::string root = "/") : root_(std::move(root)) {}

    std::optional<FileSystemStatus> statvfs(const std::string& path) override;

    /// Only for "/".
    std::optional<FileSystemMount> statfs(const std::string& path) override;

private:
    std::optional<FileSystemStatus> statusAt(const std::string& path) const;
    bool haveMountsChanged();
    void chooseVolume();

    /// Hosts of many containers have tens of thousands of mounts.
    static constexpr std::size_t longestTable = std::size_t{16} << 20;

    std::string root_;
    Descriptor mounts_;
    bool announcesChanges_ = false;
    ReadBuffer buffer_{longestTable};
    std::optional<FileSystemMount> volume_;  ///< nullopt: unknown
};

}  // namespace kestro
