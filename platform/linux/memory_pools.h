#pragma once

#include "core/platform/clock.h"
#include "platform/linux/kernel_files.h"
#include "platform/linux/proc_meminfo.h"

#include <optional>
#include <string>
#include <vector>

namespace kestro {

/// Reads the memory held by compressed RAM disks and given up by the ZFS cache. The files stay open; which
/// disks are in use is looked up every half minute, so that a machine that has neither pays nothing in between.
/// One thread at a time; allocates only when a disk appears or goes away.
class MemoryPoolReader {
public:
    explicit MemoryPoolReader(const std::string& root);

    /// What cannot be read counts 0.
    MemoryPools read(MonotonicTime now, ReadBuffer& buffer);

private:
    struct Disk {
        PersistentFile size;
        PersistentFile statistics;
        bool isInUse = false;
    };

    void lookUp(ReadBuffer& buffer);

    std::string blockDirectory_;
    DirectoryWatch blockDevices_;
    std::vector<Disk> disks_;
    PersistentFile cacheStatistics_;
    bool hasCache_ = false;
    std::optional<MonotonicTime> lookedUp_;
};

}  // namespace kestro
