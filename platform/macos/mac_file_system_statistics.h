#pragma once

#include "core/platform/file_system_statistics.h"

namespace kestro {

/// statvfs(3) and statfs(2). Main thread. Blocks on a network volume whose server does not respond, so pass only
/// local paths.
class MacFileSystemStatistics final : public FileSystemStatistics {
public:
    std::optional<FileSystemStatus> statvfs(const std::string& path) override;
    std::optional<FileSystemMount> statfs(const std::string& path) override;
};

}  // namespace kestro
