#pragma once

#include "core/telemetry/disk_telemetry.h"

namespace kestro {

class FileSystemStatistics;

/// Reads the size of the root file system. Keeps no state. Main thread.
class DiskReader {
public:
    explicit DiskReader(FileSystemStatistics& fileSystem) : fileSystem_(fileSystem) {}
    DiskReader(const DiskReader&) = delete;
    DiskReader& operator=(const DiskReader&) = delete;

    /// The process-wide reader on the current platform, made at first use.
    static DiskReader& shared();

    /// All counts are 0 when the file system does not answer. The volume's and the file system's names are
    /// fixed texts. What is reserved for the superuser counts as used.
    DiskTelemetry read();

private:
    FileSystemStatistics& fileSystem_;
};

}  // namespace kestro
