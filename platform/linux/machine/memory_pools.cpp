#include "platform/linux/machine/memory_pools.h"

#include "core/base/text.h"

#include <algorithm>
#include <chrono>

namespace kestro {
namespace {

constexpr std::chrono::seconds lookUpPeriod{30};
constexpr std::size_t diskLimit = 64;
constexpr std::uint64_t largestPool = std::uint64_t{1} << 56;

}  // namespace

MemoryPoolReader::MemoryPoolReader(const std::string& root)
    : blockDirectory_(pathUnder(root, "/sys/block")),
      blockDevices_(blockDirectory_),
      cacheStatistics_(pathUnder(root, "/proc/spl/kstat/zfs/arcstats")) {}

void MemoryPoolReader::lookUp(ReadBuffer& buffer) {
    if (blockDevices_.hasChanged()) {
        disks_.clear();
        for (const auto& name : listDirectory(blockDirectory_)) {
            if (name.starts_with("zram") && disks_.size() < diskLimit) {
                const auto directory = blockDirectory_ + "/" + name;
                disks_.push_back(
                    {PersistentFile(directory + "/disksize"), PersistentFile(directory + "/mm_stat")});
            }
        }
    }
    for (auto& disk : disks_) {
        // A disk without a size holds no memory.
        const auto size = disk.size.read(buffer);
        disk.isInUse = size && parseTrimmed<std::uint64_t>(*size).value_or(0) > 0;
    }
    hasCache_ = isReadable(cacheStatistics_.path());
}

MemoryPools MemoryPoolReader::read(MonotonicTime now, ReadBuffer& buffer) {
    if (!lookedUp_ || now - *lookedUp_ >= lookUpPeriod) {
        lookedUp_ = now;
        lookUp(buffer);
    }
    MemoryPools pools;
    for (auto& disk : disks_) {
        const auto text = disk.isInUse ? disk.statistics.read(buffer) : std::nullopt;
        const auto bytes = text ? parseZramPool(*text) : std::nullopt;
        pools.zramPool += std::min(bytes.value_or(0), largestPool);
    }
    if (hasCache_) {
        const auto text = cacheStatistics_.read(buffer);
        pools.reclaimableFileCache = (text ? parseReclaimableArc(*text) : std::nullopt).value_or(0);
    }
    return pools;
}

}  // namespace kestro
