#pragma once

#include "core/platform/clock.h"
#include "platform/linux/kernel/kernel_files.h"
#include "platform/linux/machine/proc_meminfo.h"

#include <optional>
#include <string>
#include <vector>

namespace kestro {

/// Reads the memory held by compressed RAM disks and reclaimable from the ZFS cache. The files stay open. The
/// disks in use are refreshed every 30 seconds, so a machine without either pays nothing in between. One thread at
/// a time; allocates only when a disk appears or disappears.
class MemoryPoolReader {
public:
    explicit MemoryPoolReader(const std::string& root);

    /// Counts as 0 what cannot be read.
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
