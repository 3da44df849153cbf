#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kestro {

/// Unique logical-core numbers in ascending order.
using CoreSet = std::vector<std::uint32_t>;

/// A figure of each core that has one.
using CoreFigures = std::vector<std::pair<std::uint32_t, std::uint32_t>>;

/// Parses a list in the kernel's format, "0-3,8,10-11" (Documentation/admin-guide/cputopology.rst). Empty if any
/// part is malformed; numbers above the supported maximum are dropped.
CoreSet parseCoreList(std::string_view text);

/// Selects the efficiency cores by relative capacity: those within a tenth of the lowest, provided that the lowest
/// is more than a tenth below the highest. Empty: only one kind of core.
CoreSet efficiencyCores(const CoreFigures& capacityOfCore);

/// The lower of two clear groups of cores: sorted by their figure, neighbours differ by 15 % or more at exactly
/// one place. Empty otherwise: preferred cores differ in small steps.
CoreSet lowerGroup(const CoreFigures& figureOfCore);

/// The capacity of each core relative to the machine's largest, up to 1024 (`cpu_capacity`), where the kernel
/// knows it.
CoreFigures readCapacities(const std::string& root);

/// The machine's cores and their kinds, as of one moment.
///
/// The kernel describes some cores only while they are online: a core that is in neither set may be of either
/// kind.
struct CpuTopology {
    CoreSet present;      ///< whether online or not; empty: the kernel does not list them
    CoreSet performance;  ///< empty: only one kind of core
    CoreSet efficiency;   ///< empty: only one kind of core

    bool isEfficiency(std::uint32_t cpu) const;

    /// From the first of these that tells two kinds apart: the lists of an Intel hybrid (/sys/devices/cpu_core and
    /// cpu_atom), `cpu_capacity`, `acpi_cppc/highest_perf` and the maximum frequency.
    static CpuTopology read(const std::string& root);
};

/// The cores that share a frequency domain, and so a kind, whether online or not (Documentation/admin-guide/pm/
/// cpufreq.rst, "related_cpus"). Omits domains of a single core.
std::vector<CoreSet> readFrequencyDomains(const std::string& root);

}  // namespace kestro
