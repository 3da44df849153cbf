#include "fuzz/requirement.h"
#include "platform/linux/machine/memory_pressure.h"
#include "platform/linux/machine/proc_meminfo.h"
#include "platform/linux/machine/proc_swaps.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace kestro {
namespace {

void readMemory(std::string_view text) {
    const MemoryPools pools{parseZramPool(text).value_or(0), parseReclaimableArc(text).value_or(0)};
    if (const auto info = parseMemoryInfo(text)) {
        require(info->total > 0 && info->available <= info->total && info->swapFree <= info->swapTotal);
        require(pressureLevel(*info, pools.reclaimableFileCache) >= pressureNormal);
        // A sum that wrapped would be smaller than the largest of the three shares.
        const auto statistics = virtualMemoryStatistics(*info, pools, 4096);
        const auto used =
            std::uint64_t{statistics.activeCount} + statistics.wireCount + statistics.compressorPageCount;
        require(used <= info->total / 4096 + 1);
    }
    if (const auto stall = parsePressureStall(text)) {
        require(pressureLevel(*stall) >= pressureNormal);
    }
    if (const auto usage = parseSwaps(text)) {
        require(usage->used <= usage->total);
    }
}

}  // namespace
}  // namespace kestro

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    kestro::readMemory(std::string_view(reinterpret_cast<const char*>(data), size));
    return 0;
}
