#include "platform/linux/machine/cpu_topology.h"

#include "core/base/text.h"
#include "platform/linux/kernel/kernel_files.h"
#include "platform/linux/machine/proc_stat.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <functional>
#include <iterator>
#include <numeric>
#include <utility>
#include <vector>

namespace kestro {
namespace {

constexpr std::string_view coreDirectory = "/sys/devices/system/cpu";

/// Every kind of core other than performance cores; the last one is the low-power island.
constexpr std::array<std::string_view, 2> efficiencyLists{"/sys/devices/cpu_atom/cpus",
                                                          "/sys/devices/cpu_lowpower/cpus"};

CoreSet readCoreList(const std::string& root, std::string_view path) {
    const auto text = readFile(pathUnder(root, path));
    return text ? parseCoreList(*text) : CoreSet{};
}

void sortUnique(CoreSet& cores) {
    std::ranges::sort(cores);
    cores.erase(std::unique(cores.begin(), cores.end()), cores.end());
}

/// The cores of all ranges in order, each once.
CoreSet coresIn(std::vector<std::pair<std::uint32_t, std::uint32_t>> ranges) {
    std::ranges::sort(ranges);
    CoreSet cores;
    for (const auto& [first, end] : ranges) {
        const auto start = cores.empty() ? first : std::max(first, cores.back() + 1);
        if (start < end) {
            const auto count = cores.size();
            cores.resize(count + end - start);
            std::iota(cores.begin() + static_cast<std::ptrdiff_t>(count), cores.end(), start);
        }
    }
    return cores;
}

CoreSet without(const CoreSet& cores, const CoreSet& excluded) {
    CoreSet rest;
    std::ranges::set_difference(cores, excluded, std::back_inserter(rest));
    return rest;
}

/// Whether the sibling of every core is offline: SMT is switched off. Siblings have neighbouring numbers.
bool areSiblingsOffline(const CoreSet& cores) {
    return std::ranges::adjacent_find(cores, [](auto core, auto next) { return next != core + 2; }) == cores.end();
}

/// The lists hold only cores that are online. The kernel has them only on machines with both kinds.
void readHybrid(const std::string& root, CpuTopology& topology) {
    const auto performance = readCoreList(root, "/sys/devices/cpu_core/cpus");
    CoreSet efficiency;
    for (const auto path : efficiencyLists) {
        const auto list = readCoreList(root, path);
        efficiency.insert(efficiency.end(), list.begin(), list.end());
    }
    sortUnique(efficiency);
    if (performance.empty()) {
        return;
    }
    if (efficiency.empty()) {
        // All of them are offline. Firmware lists them after the performance cores.
        const auto last = performance.back() + (areSiblingsOffline(performance) ? 1 : 0);
        std::ranges::copy_if(topology.present, std::back_inserter(efficiency),
                             [last](std::uint32_t cpu) { return cpu > last; });
    }
    if (!efficiency.empty()) {
        topology.performance = without(performance, efficiency);
        topology.efficiency = std::move(efficiency);
    }
}

/// The numbers of the directories "cpuN", which offline cores have too.
CoreSet listCores(const std::string& root) {
    CoreSet cores;
    for (const auto& name : listDirectory(pathUnder(root, coreDirectory))) {
        const auto cpu =
            name.starts_with("cpu") ? parseTrimmed<std::uint32_t>(std::string_view(name).substr(3)) : std::nullopt;
        if (cpu && *cpu < coreLimit) {
            cores.push_back(*cpu);
        }
    }
    sortUnique(cores);
    return cores;
}

CoreFigures readFigures(const std::string& root, const CoreSet& cores, std::string_view attribute) {
    CoreFigures figures;
    for (const auto cpu : cores) {
        const auto text =
            readFile(fmt::format("{}/cpu{}/{}", pathUnder(root, coreDirectory), cpu, attribute), 4096);
        const auto figure = text ? parseTrimmed<std::uint32_t>(*text) : std::nullopt;
        if (figure && *figure > 0) {
            figures.emplace_back(cpu, *figure);
        }
    }
    return figures;
}

bool areEqual(const CoreFigures& figures) {
    return std::ranges::adjacent_find(figures, std::ranges::not_equal_to{}, &CoreFigures::value_type::second) ==
           figures.end();
}

void divide(CpuTopology& topology, const CoreFigures& figures, CoreSet efficiency) {
    if (efficiency.empty()) {
        return;
    }
    CoreSet known;
    std::ranges::transform(figures, std::back_inserter(known), &CoreFigures::value_type::first);
    topology.performance = without(known, efficiency);
    topology.efficiency = std::move(efficiency);
}

void readFromFigures(const std::string& root, CpuTopology& topology) {
    const auto cores = listCores(root);
    auto figures = readFigures(root, cores, "cpu_capacity");
    divide(topology, figures, efficiencyCores(figures));
    if (!topology.efficiency.empty()) {
        return;
    }
    // Kernels give equal capacities where they do not know any, as on AMD.
    figures = readFigures(root, cores, "acpi_cppc/highest_perf");
    if (areEqual(figures)) {
        figures = readFigures(root, cores, "cpufreq/cpuinfo_max_freq");
    }
    divide(topology, figures, lowerGroup(figures));
}

}  // namespace

CoreSet parseCoreList(std::string_view text) {
    std::vector<std::pair<std::uint32_t, std::uint32_t>> ranges;  // each up to but excluding its second number
    std::size_t count = 0;
    text = trimmed(text);
    while (!text.empty()) {
        const auto comma = text.find(',');
        const auto range = text.substr(0, comma);
        text.remove_prefix(comma == std::string_view::npos ? text.size() : comma + 1);
        const auto dash = range.find('-');
        const auto first = parseTrimmed<std::uint32_t>(range.substr(0, dash));
        const auto last =
            dash == std::string_view::npos ? first : parseTrimmed<std::uint32_t>(range.substr(dash + 1));
        if (!first || !last || *first > *last || count > coreLimit) {
            return {};
        }
        if (*first < coreLimit) {
            ranges.emplace_back(*first, std::min(*last, coreLimit - 1) + 1);
            count += ranges.back().second - ranges.back().first;
        }
    }
    return coresIn(std::move(ranges));
}

CoreSet efficiencyCores(const CoreFigures& capacityOfCore) {
    CoreSet cores;
    if (capacityOfCore.empty()) {
        return cores;
    }
    const auto byCapacity = [](const auto& core) { return std::uint64_t{core.second}; };
    const auto lowest = byCapacity(*std::ranges::min_element(capacityOfCore, {}, byCapacity));
    const auto highest = byCapacity(*std::ranges::max_element(capacityOfCore, {}, byCapacity));
    if (lowest * 10 >= highest * 9) {
        return cores;
    }
    for (const auto& core : capacityOfCore) {
        if (byCapacity(core) * 10 <= lowest * 11) {
            cores.push_back(core.first);
        }
    }
    sortUnique(cores);
    return cores;
}

CoreSet lowerGroup(const CoreFigures& figureOfCore) {
    auto sorted = figureOfCore;
    std::ranges::sort(sorted, {}, &CoreFigures::value_type::second);
    const auto isStep = [](const auto& lower, const auto& higher) {
        return std::uint64_t{lower.second} * 100 <= std::uint64_t{higher.second} * 85;
    };
    const auto step = std::ranges::adjacent_find(sorted, isStep);
    if (step == sorted.end() || std::ranges::adjacent_find(step + 1, sorted.end(), isStep) != sorted.end()) {
        return {};
    }
    CoreSet cores;
    std::transform(sorted.begin(), step + 1, std::back_inserter(cores),
                   [](const auto& core) { return core.first; });
    sortUnique(cores);
    return cores;
}

CoreFigures readCapacities(const std::string& root) {
    return readFigures(root, listCores(root), "cpu_capacity");
}

bool CpuTopology::isEfficiency(std::uint32_t cpu) const {
    return std::ranges::binary_search(efficiency, cpu);
}

CpuTopology CpuTopology::read(const std::string& root) {
    CpuTopology topology;
    topology.present = readCoreList(root, "/sys/devices/system/cpu/present");
    readHybrid(root, topology);
    if (topology.efficiency.empty()) {
        readFromFigures(root, topology);
    }
    return topology;
}

std::vector<CoreSet> readFrequencyDomains(const std::string& root) {
    std::vector<CoreSet> domains;
    const auto policies = pathUnder(root, "/sys/devices/system/cpu/cpufreq/");
    for (const auto& policy : listDirectory(policies)) {
        const auto text = readFile(policies + policy + "/related_cpus");
        std::string_view rest = text ? std::string_view(*text) : std::string_view();
        CoreSet cores;
        for (auto field = takeField(rest); !field.empty(); field = takeField(rest)) {
            if (const auto cpu = parseTrimmed<std::uint32_t>(field); cpu && *cpu < coreLimit) {
                cores.push_back(*cpu);
            }
        }
        if (cores.size() > 1) {
            sortUnique(cores);
            domains.push_back(std::move(cores));
        }
    }
    return domains;
}

}  // namespace kestro
