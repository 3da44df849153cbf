#pragma once

#include "core/platform/file_system_statistics.h"

#include <optional>
#include <string>

namespace kestro {

/// `statvfs` for a path below the root directory. Main thread. Blocks on a network file system whose server does
/// not respond, so pass only local paths.
class LinuxFileSystemStatistics final : public FileSystemStatistics {
public:
    /// `root` is the mount point of the machine's file system.
    explicit LinuxFileSystemStatistics(std::string root = "/") : root_(std::move(root)) {}

    std::optional<FileSystemStatus> statvfs(const std::string& path) override;

private:
    std::string root_;
};

}  // namespace kestro
