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

/// The fields of `statfs` that say which file system a path lies on.
struct FileSystemMount {
    std::string point;   ///< f_mntonname
    std::string device;  ///< f_mntfromname: a device's path, or whatever the file system states
    std::string type;    ///< f_fstypename

    friend bool operator==(const FileSystemMount&, const FileSystemMount&) = default;
};

/// File-system statistics. Main thread.
class FileSystemStatistics {
public:
    virtual ~FileSystemStatistics() = default;

    /// nullopt: the call failed.
    virtual std::optional<FileSystemStatus> statvfs(const std::string& path) = 0;

    /// Which file system the figures for `path` come from: where "/" is an image that has no space of its own,
    /// that is another one. nullopt: unknown.
    virtual std::optional<FileSystemMount> statfs(const std::string& /*path*/) { return std::nullopt; }
};

}  // namespace kestro
