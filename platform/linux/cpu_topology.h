#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kestro {

/// Numbers of logical cores, ascending, each once.
using CoreSet = std::vector<std::uint32_t>;

/// A list as the kernel writes it, "0-3,8,10-11" (Documentation/admin-guide/cputopology.rst). Empty for a text
/// that is malformed anywhere; numbers beyond the largest that is taken are left out.
CoreSet parseCoreList(std::string_view text);

/// Which of the cores are efficiency cores, by their relative capacities: those within a tenth of the lowest
/// one, provided that it lies more than a tenth below the highest. Empty: there is one kind of core only.
CoreSet efficiencyCores(const std::vector<std::pair<std::uint32_t, std::uint32_t>>& capacityOfCore);

/// The machine's kinds of cores, fixed when it was read.
struct CpuTopology {
    CoreSet efficiency;  ///< empty: one kind of core only

    bool isEfficiency(std::uint32_t cpu) const;

    /// From the two lists of an Intel hybrid (/sys/devices/cpu_core and cpu_atom), else from `cpu_capacity`.
    static CpuTopology read(const std::string& root);
};

}  // namespace kestro
