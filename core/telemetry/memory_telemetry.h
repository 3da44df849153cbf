#pragma once

#include <cstdint>
#include <string>

namespace kestro {

/// One sample of the machine's memory, in bytes.
struct MemoryTelemetry {
    std::uint64_t totalBytes = 0;
    std::uint64_t usedBytes = 0;  ///< active, wired and compressed
    std::uint64_t activeBytes = 0;
    std::uint64_t wiredBytes = 0;
    std::uint64_t compressedBytes = 0;
    std::uint64_t inactiveBytes = 0;
    std::uint64_t freeBytes = 0;
    std::uint64_t swapUsedBytes = 0;
    std::uint64_t swapTotalBytes = 0;
    std::string pressureLevel = "Normal";  ///< "Normal", "Warning" or "Critical"

    /// Shown before the first sample.
    static MemoryTelemetry initial() { return {}; }

    /// Used share in percent; 0 when the total is 0. May exceed 100 if the kernel's counts do.
    double usedPercentage() const {
        return totalBytes == 0 ? 0 : static_cast<double>(usedBytes) / static_cast<double>(totalBytes) * 100;
    }

    friend bool operator==(const MemoryTelemetry&, const MemoryTelemetry&) = default;
};

}  // namespace kestro
