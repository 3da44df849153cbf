#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace kestro {

/// The fields of `statvfs` that are in use.
struct FileSystemStatus {
    std::uint64_t fragmentSize = 0;     ///< f_frsize, bytes
    std::uint64_t blocks = 0;           ///< f_blocks, in fragments
    std::uint64_t availableBlocks = 0;  ///< f_bavail: available to unprivileged users
};

/// File-system statistics. Main thread.
class FileSystemStatistics {
public:
    virtual ~FileSystemStatistics() = default;

    /// nullopt: the call failed.
    virtual std::optional<FileSystemStatus> statvfs(const std::string& path) = 0;
};

}  // namespace kestro
