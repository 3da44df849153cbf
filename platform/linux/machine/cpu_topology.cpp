#include "platform/linux/machine/cpu_topology.h"

#include "core/base/text.h"
#include "platform/linux/kernel/kernel_files.h"
#include "platform/linux/machine/proc_stat.h"

#include <algorithm>
#include <array>

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

CoreSet hybridEfficiencyCores(const std::string& root) {
    CoreSet cores;
    if (readCoreList(root, "/sys/devices/cpu_core/cpus").empty()) {
        return cores;
    }
    for (const auto path : efficiencyLists) {
        const auto list = readCoreList(root, path);
        cores.insert(cores.end(), list.begin(), list.end());
    }
    sortUnique(cores);
    return cores;
}

std::vector<std::pair<std::uint32_t, std::uint32_t>> readCapacities(const std::string& root) {
    std::vector<std::pair<std::uint32_t, std::uint32_t>> capacities;
    const auto directory = pathUnder(root, coreDirectory);
    for (const auto& name : listDirectory(directory)) {
        if (!name.starts_with("cpu")) {
            continue;
        }
        const auto cpu = parseTrimmed<std::uint32_t>(std::string_view(name).substr(3));
        if (!cpu || *cpu >= coreLimit) {
            continue;
        }
        const auto text = readFile(directory + "/" + name + "/cpu_capacity");
        const auto capacity = text ? parseTrimmed<std::uint32_t>(*text) : std::nullopt;
        if (capacity && *capacity > 0) {
            capacities.emplace_back(*cpu, *capacity);
        }
    }
    return capacities;
}

}  // namespace

CoreSet parseCoreList(std::string_view text) {
    CoreSet cores;
    text = trimmed(text);
    while (!text.empty()) {
        const auto comma = text.find(',');
        const auto range = text.substr(0, comma);
        text.remove_prefix(comma == std::string_view::npos ? text.size() : comma + 1);
        const auto dash = range.find('-');
        const auto first = parseTrimmed<std::uint32_t>(range.substr(0, dash));
        const auto last =
            dash == std::string_view::npos ? first : parseTrimmed<std::uint32_t>(range.substr(dash + 1));
        if (!first || !last || *first > *last || cores.size() > coreLimit) {
            return {};
        }
        for (auto cpu = *first; cpu <= *last && cpu < coreLimit; ++cpu) {
            cores.push_back(cpu);
        }
    }
    sortUnique(cores);
    return cores;
}

CoreSet efficiencyCores(const std::vector<std::pair<std::uint32_t, std::uint32_t>>& capacityOfCore) {
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

bool CpuTopology::isEfficiency(std::uint32_t cpu) const {
    return std::ranges::binary_search(efficiency, cpu);
}

CpuTopology CpuTopology::read(const std::string& root) {
    auto cores = hybridEfficiencyCores(root);
    return CpuTopology{cores.empty() ? efficiencyCores(readCapacities(root)) : std::move(cores)};
}

}  // namespace kestro
