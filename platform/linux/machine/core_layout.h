#pragma once

#include "platform/linux/machine/cpu_topology.h"
#include "platform/linux/machine/proc_stat.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace kestro {

/// The positions of the machine's cores: performance cores first, then efficiency cores, whether online or not.
/// One thread at a time.
///
/// The kernel may describe a core only once it is online (an efficiency core that was parked at start, a sibling
/// thread after SMT is switched on), so the topology is read again whenever a core is online for the first time.
/// Until then, the core is taken to be of the same kind as its frequency domain or its neighbour. A core keeps its
/// position as long as the kinds of the others do; new ones come last among their kind.
class CoreLayout {
public:
    explicit CoreLayout(std::string root) : root_(std::move(root)) {}

    /// Takes note of the cores that are online now. True: the positions have changed. Allocates nothing as long as
    /// no core is online for the first time.
    bool follow(const std::vector<CoreTicks>& online);

    /// Core numbers by position.
    const CoreSet& order() const { return order_; }

    /// If all cores are of one kind, they are performance cores.
    std::size_t performanceCount() const { return performanceCount_; }
    std::size_t efficiencyCount() const { return order_.size() - performanceCount_; }

private:
    enum class Kind : std::uint8_t { unknown, performance, efficiency };

    void learn(const CpuTopology& topology);
    void place(const CoreSet& present);
    Kind kindOf(std::uint32_t cpu) const;
    std::vector<Kind> guessKinds(const CoreSet& cores) const;

    std::string root_;
    std::vector<bool> wasOnline_;  ///< by number
    std::vector<Kind> kinds_;      ///< by number, as the kernel last said
    CoreSet order_;
    std::size_t performanceCount_ = 0;
};

}  // namespace kestro
