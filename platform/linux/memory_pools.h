#pragma once

#include "core/platform/clock.h"
#include "platform/linux/kernel_files.h"
#include "platform/linux/proc_meminfo.h"

#include <string>
#include <vector>

namespace kestro {

/// Reads the memory held by compressed RAM disks and given up by the ZFS cache. The files of those that are in
/// use stay open; which ones are is looked up again every half minute. One thread at a time; a machine that
/// has neither pays nothing in between.
class MemoryPoolReader {
public:
    explicit MemoryPoolReader(std::string root) : root_(std::move(root)) {}

    /// What cannot be read counts 0.
    MemoryPools read(MonotonicTime now, ReadBuffer& buffer);

private:
    void findPools();

    std::string root_;
    std::optional<MonotonicTime> lookedUp_;
    std::vector<PersistentFile> zramStatistics_;
    std::optional<PersistentFile> arcStatistics_;
};

}  // namespace kestro
