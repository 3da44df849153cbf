#pragma once

#include "core/platform/clock.h"
#include "core/platform/mach_host.h"
#include "platform/linux/kernel/kernel_files.h"
#include "platform/linux/machine/core_layout.h"
#include "platform/linux/machine/memory_pools.h"
#include "platform/linux/machine/proc_stat.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace kestro {

/// Processor ticks from /proc/stat and page counts from /proc/meminfo. Main thread.
///
/// Lists performance cores first, then efficiency cores, each by number, whether online or not; an offline core
/// keeps its last ticks. Cores are arranged anew when the kernel describes further ones (see CoreLayout); a new
/// core starts with its ticks since boot, one that was listed offline with none.
///
/// Ticks never go backwards, although the kernel's do. On many kernels, idle time restarts from 0 when a core
/// comes back online, which after a suspend affects all cores but one. The I/O-wait part of idle time is only an
/// estimate.
class LinuxMachHost final : public MachHost {
public:
    /// `root` is the mount point of the machine's file system; `pageSize` is that machine's, 0 for this one's.
    explicit LinuxMachHost(const Clock& clock, std::string root = "/", std::size_t pageSize = 0);

    std::optional<ProcessorLoadInfo> hostProcessorInfo() override;
    void vmDeallocate(std::int32_t* address, std::size_t byteCount) override;
    std::optional<VirtualMemoryStatistics> hostStatistics64() override;
    std::optional<std::size_t> hostPageSize() override;

private:
    struct TickArray {
        std::unique_ptr<std::int32_t[]> integers;
        std::size_t capacity = 0;
        bool isLent = false;
    };

    /// A core at its position in the result.
    struct Slot {
        CoreTicks latest;  ///< as last read, or higher during a dip
        CoreTicks total;   ///< what is reported
        std::uint64_t firstReading = 0;
        std::uint64_t lastReading = 0;  ///< 0: never online
    };

    bool readCores();
    void arrange();
    void updateSlots();
    void updateSlot(Slot& slot, const CoreTicks& core) const;
    std::int32_t* lendArray(std::size_t integerCount);

    const Clock& clock_;
    std::size_t pageSize_;
    CoreLayout layout_;
    ReadBuffer buffer_;
    PersistentFile stat_;
    PersistentFile memInfo_;
    MemoryPoolReader pools_;

    std::size_t statPrefix_;
    std::vector<CoreTicks> cores_;               ///< as last read
    std::vector<Slot> slots_;                    ///< in result order
    std::vector<std::int32_t> slotOfCpu_;        ///< -1: none
    std::vector<ProcessorIdentity> identities_;  ///< of the slots
    std::uint64_t reading_ = 0;
    std::uint32_t arrangement_ = 0;
    std::vector<TickArray> arrays_;
};

}  // namespace kestro
