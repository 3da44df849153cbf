#pragma once

#include "core/platform/file_system_statistics.h"

#include <cstdint>
#include <optional>
#include <string>

namespace kestro {

/// One sample of the root file system, in bytes.
struct DiskTelemetry {
    std::uint64_t totalBytes = 0;
    std::uint64_t freeBytes = 0;  ///< available to unprivileged users
    std::uint64_t usedBytes = 0;
    std::string volumeName;
    std::string fileSystem;

    /// The file system that was measured; absent if unknown.
    std::optional<FileSystemMount> mount = std::nullopt;

    /// Shown before the first sample.
    static DiskTelemetry initial() { return {0, 0, 0, "Macintosh HD", "APFS", std::nullopt}; }

    /// Used share in percent; 0 when the total is 0.
    double usedPercentage() const;

    friend bool operator==(const DiskTelemetry&, const DiskTelemetry&) = default;
};

}  // namespace kestro
