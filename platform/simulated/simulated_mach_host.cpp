#include "platform/simulated/simulated_mach_host.h"

#include <algorithm>
#include <cmath>

namespace kestro {

namespace {

constexpr std::uint32_t everyCoreChannel = 100;
constexpr std::uint32_t burstChannel = 101;
constexpr std::uint32_t activeChannel = 110;
constexpr std::uint32_t compressorChannel = 111;
constexpr std::uint32_t inactiveChannel = 112;
constexpr double ticksPerSecond = 1000;

std::uint32_t moved(std::uint32_t pages, double fraction) {
    return static_cast<std::uint32_t>(std::lround(pages * (1 + fraction)));
}

}  // namespace

SimulatedMachHost::SimulatedMachHost(const SimulatedPattern& pattern)
    : cores(12), coreLoads{40, 35, 21, 16, 30, 12, 9, 23, 14, 9, 6, 3}, pattern_(pattern) {
    // 16 KiB pages: 8.1 GB active, 3.4 GB wired, 1.9 GB compressed, 9.8 GB inactive, 8.8 GB free.
    statistics = {576717, 530842, 642253, 222822, 124518};
}

std::optional<ProcessorLoadInfo> SimulatedMachHost::hostProcessorInfo() {
    ++processorInfoCalls_;
    if (processorInfoFailure.strikes()) {
        return std::nullopt;
    }
    work();
    const auto count = static_cast<std::uint32_t>(cores.size()) + countedInExcess;
    if (answersWithoutArray) {
        return ProcessorLoadInfo{count, {}, identities, arrangement};
    }
    Array& array = arrayOf(cores.size() * 4);
    for (std::size_t core = 0; core < cores.size(); ++core) {
        const auto ticks = {cores[core].user, cores[core].system, cores[core].idle, cores[core].nice};
        std::ranges::transform(ticks, array.info.begin() + static_cast<std::ptrdiff_t>(core * 4),
                               [](std::uint32_t tick) { return static_cast<std::int32_t>(tick); });
    }
    return ProcessorLoadInfo{count, array.info, identities, arrangement};
}

void SimulatedMachHost::vmDeallocate(std::int32_t* address, std::size_t byteCount) {
    const auto array = std::ranges::find_if(
        pool_, [address](const Array& candidate) { return candidate.isOut && candidate.info.data() == address; });
    if (array == pool_.end() || byteCount != array->info.size() * 4) {
        ++wrongDeallocations_;
        return;
    }
    array->isOut = false;
    --outstanding_;
}

std::optional<VirtualMemoryStatistics> SimulatedMachHost::hostStatistics64() {
    ++statisticsCalls_;
    if (statisticsFailure.strikes()) {
        return std::nullopt;
    }
    VirtualMemoryStatistics now = statistics;
    now.activeCount = moved(statistics.activeCount, 0.02 * pattern_.wave(activeChannel));
    now.compressorPageCount = moved(statistics.compressorPageCount, 0.03 * pattern_.wave(compressorChannel));
    now.inactiveCount = moved(statistics.inactiveCount, 0.02 * pattern_.wave(inactiveChannel));
    return now;
}

std::optional<std::size_t> SimulatedMachHost::hostPageSize() {
    return pageSizeFailure.strikes() ? std::nullopt : pageSize;
}

void SimulatedMachHost::addTicks(std::size_t core, const SimulatedCoreTicks& ticks) {
    cores[core].user += ticks.user;
    cores[core].system += ticks.system;
    cores[core].idle += ticks.idle;
    cores[core].nice += ticks.nice;
}

void SimulatedMachHost::work() {
    stretch_.catchUp(pattern_.seconds(), [this](double moment, double length) {
        const double common = 1 + 0.25 * pattern_.waveAt(everyCoreChannel, moment);
        const double burst = 26 * pattern_.burstAt(burstChannel, moment);
        const auto total = static_cast<std::uint32_t>(std::lround(length * ticksPerSecond));
        for (std::size_t core = 0; core < std::min(cores.size(), coreLoads.size()); ++core) {
            const double own = 1 + 0.35 * pattern_.waveAt(static_cast<std::uint32_t>(core), moment);
            const double load = std::clamp(coreLoads[core] * common * own + burst, 0.0, 100.0);
            const auto busy = static_cast<std::uint32_t>(std::lround(total * load / 100));
            const auto user = static_cast<std::uint32_t>(std::lround(busy * 0.65));
            addTicks(core, {user, busy - user, total - busy, 0});
        }
    });
}

SimulatedMachHost::Array& SimulatedMachHost::arrayOf(std::size_t length) {
    auto array = std::ranges::find_if(pool_, [](const Array& candidate) { return !candidate.isOut; });
    if (array == pool_.end()) {
        array = pool_.emplace(pool_.end());
    }
    // Even an empty array has an address.
    array->info.reserve(1);
    array->info.resize(length);
    array->isOut = true;
    ++outstanding_;
    return *array;
}

}  // namespace kestro
