#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kestro {

/// Unique logical-core numbers in ascending order.
using CoreSet = std::vector<std::uint32_t>;

/// Parses a list in the kernel's format, "0-3,8,10-11" (Documentation/admin-guide/cputopology.rst). Empty if any
/// part is malformed; numbers above the supported maximum are dropped.
CoreSet parseCoreList(std::string_view text);

/// Selects the efficiency cores by relative capacity: those within a tenth of the lowest, provided that the lowest
/// is more than a tenth below the highest. Empty: only one kind of core.
CoreSet efficiencyCores(const std::vector<std::pair<std::uint32_t, std::uint32_t>>& capacityOfCore);

/// The machine's kinds of cores, as of construction.
struct CpuTopology {
    CoreSet efficiency;  ///< empty: only one kind of core

    bool isEfficiency(std::uint32_t cpu) const;

    /// From the two lists of an Intel hybrid (/sys/devices/cpu_core and cpu_atom), or else from `cpu_capacity`.
    static CpuTopology read(const std::string& root);
};

}  // namespace kestro
