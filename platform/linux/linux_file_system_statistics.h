#pragma once

#include "core/platform/file_system_statistics.h"

#include <optional>
#include <string>

namespace kestro {

/// `statvfs` of a path below the root directory. Main thread; a path on a network file system whose server
/// does not answer blocks, so only local paths are meant for it.
class LinuxFileSystemStatistics final : public FileSystemStatistics {
public:
    /// `root` is where the machine's file system is mounted.
    explicit LinuxFileSystemStatistics(std::string root = "/") : root_(std::move(root)) {}

    std::optional<FileSystemStatus> statvfs(const std::string& path) override;

private:
    std::string root_;
};

}  // namespace kestro
