#pragma once

#include "core/platform/mach_host.h"
#include "platform/simulated/simulated_failure.h"
#include "platform/simulated/simulated_pattern.h"

#include <deque>
#include <vector>

namespace kestro {

/// Cumulative ticks of one simulated core; they wrap.
struct SimulatedCoreTicks {
    std::uint32_t user = 0;
    std::uint32_t system = 0;
    std::uint32_t idle = 0;
    std::uint32_t nice = 0;
};

/// Eight performance and four efficiency cores at 18 % overall, and 32 GB of memory with 42 % in use. Arrays come
/// from a pool, so nothing is allocated once two of them are in use.
class SimulatedMachHost final : public MachHost {
public:
    explicit SimulatedMachHost(const SimulatedPattern& pattern);

    std::optional<ProcessorLoadInfo> hostProcessorInfo() override;
    void vmDeallocate(std::int32_t* address, std::size_t byteCount) override;
    std::optional<VirtualMemoryStatistics> hostStatistics64() override;
    std::optional<std::size_t> hostPageSize() override;

    SimulatedFailure processorInfoFailure;
    SimulatedFailure statisticsFailure;
    SimulatedFailure pageSizeFailure;

    std::vector<SimulatedCoreTicks> cores;      ///< the counters; unless frozen, they grow with `coreLoads`
    std::vector<double> coreLoads;              ///< mean load of each core in percent
    std::vector<ProcessorIdentity> identities;  ///< of the cores; empty: not reported
    std::uint32_t arrangement = 0;              ///< increment it whenever the counters belong to other cores
    bool answersWithoutArray = false;           ///< succeeds with a null array
    std::uint32_t countedInExcess = 0;          ///< processors reported in excess of the array
    VirtualMemoryStatistics statistics;         ///< mean page counts
    std::optional<std::size_t> pageSize = 16384;

    std::int64_t outstandingArrays() const { return outstanding_; }
    std::int64_t wrongDeallocations() const { return wrongDeallocations_; }
    std::int64_t processorInfoCalls() const { return processorInfoCalls_; }
    std::int64_t statisticsCalls() const { return statisticsCalls_; }

    /// Adds to the counters of one core.
    void addTicks(std::size_t core, const SimulatedCoreTicks& ticks);

private:
    struct Array {
        std::vector<std::int32_t> info;
        bool isOut = false;
    };

    void work();
    Array& arrayOf(std::size_t length);

    const SimulatedPattern& pattern_;
    SimulatedStretch stretch_;
    std::deque<Array> pool_;
    std::int64_t outstanding_ = 0;
    std::int64_t wrongDeallocations_ = 0;
    std::int64_t processorInfoCalls_ = 0;
    std::int64_t statisticsCalls_ = 0;
};

}  // namespace kestro
