#pragma once

#include <deque>
#include <vector>

#include "core/platform/mach_host.h"
#include "platform/simulated/simulated_failure.h"
#include "platform/simulated/simulated_pattern.h"

namespace kestro {

/// Cumulative ticks of one simulated core; they wrap.
struct SimulatedCoreTicks {
    std::uint32_t user = 0;
    std::uint32_t system = 0;
    std::uint32_t idle = 0;
    std::uint32_t nice = 0;
};

/// Eight performance cores and four efficiency cores at 18 % together, and 32 GB of which 42 % are in use.
/// Arrays come from a pool, so that nothing is allocated once two of them are out.
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

    std::vector<SimulatedCoreTicks> cores;  ///< the counters; while moving they grow with `coreLoads`
    std::vector<double> coreLoads;          ///< percent that each core tends to
    bool answersWithoutArray = false;       ///< success, but a null array
    std::uint32_t countedInExcess = 0;      ///< processors reported beyond those in the array
    VirtualMemoryStatistics statistics;     ///< what the page counts tend to
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
