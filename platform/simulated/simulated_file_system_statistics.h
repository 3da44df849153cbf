#pragma once

#include "core/platform/file_system_statistics.h"
#include "platform/simulated/simulated_failure.h"

namespace kestro {

/// A root file system of 926 GB with 611.2 GB free; no other path exists.
class SimulatedFileSystemStatistics final : public FileSystemStatistics {
public:
    std::optional<FileSystemStatus> statvfs(const std::string& path) override {
        if (failure.strikes() || path != "/") {
            return std::nullopt;
        }
        return root;
    }

    std::optional<FileSystemMount> statfs(const std::string& path) override {
        return path == "/" ? mount : std::nullopt;
    }

    SimulatedFailure failure;
    FileSystemStatus root{4096, 242'745'344, 160'222'412};
    std::optional<FileSystemMount> mount;  ///< nullopt: unknown
};

}  // namespace kestro
