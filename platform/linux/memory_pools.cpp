#include "platform/linux/memory_pools.h"

#include "platform/linux/text_parsing.h"

#include <algorithm>
#include <chrono>

namespace kestro {
namespace {

constexpr std::chrono::seconds lookUpPeriod{30};
constexpr std::size_t diskLimit = 64;

}  // namespace

void MemoryPoolReader::findPools() {
    zramStatistics_.clear();
    arcStatistics_.reset();
    const auto disks = pathUnder(root_, "/sys/block");
    for (const auto& name : listDirectory(disks)) {
        if (!name.starts_with("zram") || zramStatistics_.size() == diskLimit) {
            continue;
        }
        // A disk that was never given a size holds no memory.
        const auto size = readFile(disks + "/" + name + "/disksize");
        if (size && parseInteger<std::uint64_t>(*size).value_or(0) > 0) {
            zramStatistics_.emplace_back(disks + "/" + name + "/mm_stat");
        }
    }
    const auto arc = pathUnder(root_, "/proc/spl/kstat/zfs/arcstats");
    if (isReadable(arc)) {
        arcStatistics_.emplace(arc);
    }
}

MemoryPools MemoryPoolReader::read(MonotonicTime now, ReadBuffer& buffer) {
    if (!lookedUp_ || now - *lookedUp_ >= lookUpPeriod) {
        lookedUp_ = now;
        findPools();
    }
    MemoryPools pools;
    for (auto& file : zramStatistics_) {
        const auto text = file.read(buffer);
        const auto bytes = text ? parseZramPool(*text) : std::nullopt;
        pools.zramPool += std::min(bytes.value_or(0), std::uint64_t{1} << 56);
    }
    if (arcStatistics_) {
        const auto text = arcStatistics_->read(buffer);
        pools.reclaimableFileCache = (text ? parseReclaimableArc(*text) : std::nullopt).value_or(0);
    }
    return pools;
}

}  // namespace kestro
