#include "platform/linux/machine/core_layout.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace kestro {

bool CoreLayout::follow(const std::vector<CoreTicks>& online) {
    bool isAnyNew = false;
    for (const auto& core : online) {
        if (core.cpu >= wasOnline_.size()) {
            wasOnline_.resize(core.cpu + 1, false);
        }
        isAnyNew = isAnyNew || !wasOnline_[core.cpu];
        wasOnline_[core.cpu] = true;
    }
    if (!isAnyNew) {
        return false;
    }
    const auto before = std::pair(order_, performanceCount_);
    const auto topology = CpuTopology::read(root_);
    learn(topology);
    place(topology.present);
    return before != std::pair(order_, performanceCount_);
}

void CoreLayout::learn(const CpuTopology& topology) {
    const auto note = [this](const CoreSet& cores, Kind kind) {
        for (const auto cpu : cores) {
            kinds_.resize(std::max<std::size_t>(kinds_.size(), cpu + 1), Kind::unknown);
            kinds_[cpu] = kind;
        }
    };
    note(topology.performance, Kind::performance);
    note(topology.efficiency, Kind::efficiency);
}

CoreLayout::Kind CoreLayout::kindOf(std::uint32_t cpu) const {
    return cpu < kinds_.size() ? kinds_[cpu] : Kind::unknown;
}

std::vector<CoreLayout::Kind> CoreLayout::guessKinds(const CoreSet& cores) const {
    std::vector<Kind> kinds(cores.empty() ? 0 : cores.back() + 1, Kind::unknown);
    bool isAnyUnknown = false;
    Kind first = Kind::unknown;
    for (const auto cpu : cores) {
        kinds[cpu] = kindOf(cpu);
        isAnyUnknown = isAnyUnknown || kinds[cpu] == Kind::unknown;
        first = first == Kind::unknown ? kinds[cpu] : first;
    }
    if (!isAnyUnknown || first == Kind::unknown) {
        return kinds;
    }
    for (const auto& domain : readFrequencyDomains(root_)) {
        const auto known =
            std::ranges::find_if(domain, [this](std::uint32_t cpu) { return kindOf(cpu) != Kind::unknown; });
        for (const auto cpu : domain) {
            if (known != domain.end() && cpu < kinds.size() && kinds[cpu] == Kind::unknown) {
                kinds[cpu] = kindOf(*known);
            }
        }
    }
    for (Kind previous = first; const auto cpu : cores) {
        previous = kinds[cpu] = kinds[cpu] == Kind::unknown ? previous : kinds[cpu];
    }
    return kinds;
}

void CoreLayout::place(const CoreSet& present) {
    CoreSet cores = present;
    for (std::uint32_t cpu = 0; cpu < wasOnline_.size(); ++cpu) {
        if (wasOnline_[cpu]) {
            cores.push_back(cpu);
        }
    }
    cores.insert(cores.end(), order_.begin(), order_.end());
    std::ranges::sort(cores);
    cores.erase(std::unique(cores.begin(), cores.end()), cores.end());

    const auto kinds = guessKinds(cores);
    const std::size_t known = order_.size();
    std::ranges::copy_if(cores, std::back_inserter(order_), [&](std::uint32_t cpu) {
        const auto end = order_.begin() + static_cast<std::ptrdiff_t>(known);
        return std::find(order_.begin(), end, cpu) == end;
    });
    const auto efficiency = std::stable_partition(
        order_.begin(), order_.end(), [&](std::uint32_t cpu) { return kinds[cpu] != Kind::efficiency; });
    performanceCount_ = static_cast<std::size_t>(efficiency - order_.begin());
    if (performanceCount_ == 0) {
        performanceCount_ = order_.size();
    }
}

}  // namespace kestro
