#pragma once

#include "core/telemetry/disk_telemetry.h"

namespace kestro {

class FileSystemStatistics;

/// Reads the size of the root file system. Stateless. Main thread.
class DiskReader {
public:
    explicit DiskReader(FileSystemStatistics& fileSystem) : fileSystem_(fileSystem) {}
    DiskReader(const DiskReader&) = delete;
    DiskReader& operator=(const DiskReader&) = delete;

    /// The process-wide reader on the current platform, created on first use.
    static DiskReader& shared();

    /// All counts are 0 if the file system cannot be read. The volume and file-system names are fixed texts; the
    /// mount is the real one. Space reserved for the superuser counts as used.
    DiskTelemetry read();

private:
    FileSystemStatistics& fileSystem_;
};

}  // namespace kestro
