#include "platform/linux/machine/proc_meminfo.h"

#include "core/base/text.h"

#include <algorithm>
#include <array>
#include <limits>

namespace kestro {
namespace {

enum Line {
    memTotal,
    memFree,
    memAvailable,
    buffers,
    cached,
    unevictable,
    swapTotal,
    swapFree,
    zswap,
    shmem,
    sReclaimable,
    sUnreclaim,
    kernelStack,
    pageTables,
    percpu,
    lineCount
};

// In the kernel's output order, so that one pass with a moving start finds each at once.
constexpr std::array<std::string_view, lineCount> lineNames{
    "MemTotal:",     "MemFree:",    "MemAvailable:", "Buffers:",    "Cached:",
    "Unevictable:",  "SwapTotal:",  "SwapFree:",     "Zswap:",      "Shmem:",
    "SReclaimable:", "SUnreclaim:", "KernelStack:",  "PageTables:", "Percpu:"};

using Figures = std::array<std::optional<std::uint64_t>, lineCount>;

constexpr std::uint64_t largest = std::numeric_limits<std::uint64_t>::max();

std::uint64_t sum(std::uint64_t a, std::uint64_t b) {
    return a > largest - b ? largest : a + b;
}

std::uint64_t difference(std::uint64_t a, std::uint64_t b) {
    return a > b ? a - b : 0;
}

/// The number of kibibytes at the beginning of `rest`, in bytes.
std::optional<std::uint64_t> parseKibibytes(std::string_view rest) {
    const auto kibibytes = parseTrimmed<std::uint64_t>(takeField(rest));
    if (!kibibytes || *kibibytes > largest / 1024) {
        return std::nullopt;
    }
    return *kibibytes * 1024;
}

Figures readFigures(std::string_view text) {
    Figures figures;
    std::size_t expected = 0;
    while (!text.empty()) {
        auto line = takeLine(text);
        const auto name = takeField(line);
        for (std::size_t step = 0; step < lineNames.size(); ++step) {
            const auto index = (expected + step) % lineNames.size();
            if (lineNames[index] == name) {
                figures[index] = parseKibibytes(line);
                expected = index + 1;
                break;
            }
        }
    }
    return figures;
}

/// procps's estimate of available memory before the kernel provided one: free memory plus caches, minus the shared
/// memory included in them, which cannot be dropped.
std::uint64_t estimatedAvailable(const Figures& figures) {
    const auto caches =
        sum(sum(figures[buffers].value_or(0), figures[cached].value_or(0)), figures[sReclaimable].value_or(0));
    return sum(figures[memFree].value_or(0), difference(caches, figures[shmem].value_or(0)));
}

}  // namespace

std::optional<MemoryInfo> parseMemoryInfo(std::string_view text) {
    const auto figures = readFigures(text);
    MemoryInfo info;
    info.total = figures[memTotal].value_or(0);
    if (info.total == 0) {
        return std::nullopt;
    }
    info.free = std::min(figures[memFree].value_or(0), info.total);
    info.available = figures[memAvailable] ? *figures[memAvailable] : estimatedAvailable(figures);
    info.available = std::min(info.available, info.total);
    info.swapTotal = figures[swapTotal].value_or(0);
    info.swapFree = std::min(figures[swapFree].value_or(0), info.swapTotal);
    info.zswapPool = figures[zswap].value_or(0);
    for (const auto line : {sUnreclaim, kernelStack, pageTables, percpu, unevictable}) {
        info.unreclaimable = sum(info.unreclaimable, figures[line].value_or(0));
    }
    return info;
}

VirtualMemoryStatistics virtualMemoryStatistics(const MemoryInfo& info, const MemoryPools& pools,
                                                std::size_t pageSize) {
    const auto pages = [pageSize](std::uint64_t bytes) {
        const std::uint64_t count = bytes / pageSize;
        return static_cast<std::uint32_t>(
            std::min<std::uint64_t>(count, std::numeric_limits<std::uint32_t>::max()));
    };
    const auto available = std::min(sum(info.available, pools.reclaimableFileCache), info.total);
    const auto used = pages(info.total - available);

    VirtualMemoryStatistics statistics;
    statistics.compressorPageCount = std::min(pages(sum(info.zswapPool, pools.zramPool)), used);
    statistics.wireCount = std::min(pages(info.unreclaimable), used - statistics.compressorPageCount);
    statistics.activeCount = used - statistics.compressorPageCount - statistics.wireCount;
    statistics.freeCount = pages(info.free);
    statistics.inactiveCount = pages(difference(available, info.free));
    return statistics;
}

std::optional<std::uint64_t> parseZramPool(std::string_view mmStat) {
    auto line = takeLine(mmStat);
    takeField(line);
    takeField(line);
    return parseTrimmed<std::uint64_t>(takeField(line));
}

std::optional<std::uint64_t> parseReclaimableArc(std::string_view arcStats) {
    std::optional<std::uint64_t> size;
    std::optional<std::uint64_t> minimum;
    while (!arcStats.empty() && !(size && minimum)) {
        auto line = takeLine(arcStats);
        const auto name = takeField(line);
        if (name == "size" || name == "c_min") {
            takeField(line);
            (name == "size" ? size : minimum) = parseTrimmed<std::uint64_t>(takeField(line));
        }
    }
    return size && minimum ? std::optional(difference(*size, *minimum)) : std::nullopt;
}

}  // namespace kestro
