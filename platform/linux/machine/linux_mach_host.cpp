#include "platform/linux/machine/linux_mach_host.h"

#include <unistd.h>

#include <algorithm>
#include <utility>

namespace kestro {
namespace {

// The lines after the cores can fill megabytes on large machines, so read only as much as the cores need.
constexpr std::size_t initialStatPrefix = 4096;
constexpr std::size_t largestStatPrefix = std::size_t{1} << 20;

std::size_t systemPageSize() {
    const long size = ::sysconf(_SC_PAGESIZE);
    return size > 0 ? static_cast<std::size_t>(size) : 4096;
}

/// The kernel's estimates may step back by a few ticks; a greater step back means a restart.
constexpr std::int32_t largestDip = 100;

/// Adds a counter's growth since the previous reading. A counter that went backwards adds nothing; after a dip it
/// adds again once it exceeds its previous maximum.
void advance(std::uint32_t& total, std::uint32_t& latest, std::uint32_t now) {
    // Counters wrap at 32 bits, so the sign of the difference gives the direction.
    const auto growth = static_cast<std::int32_t>(now - latest);
    if (growth < 0 && growth >= -largestDip) {
        return;
    }
    total += growth > 0 ? static_cast<std::uint32_t>(growth) : 0;
    latest = now;
}

}  // namespace

LinuxMachHost::LinuxMachHost(const Clock& clock, std::string root, std::size_t pageSize)
    : clock_(clock),
      pageSize_(pageSize != 0 ? pageSize : systemPageSize()),
      layout_(root),
      buffer_(largestStatPrefix),
      stat_(pathUnder(root, "/proc/stat")),
      memInfo_(pathUnder(root, "/proc/meminfo")),
      pools_(root),
      statPrefix_(initialStatPrefix) {
    if (readCores()) {
        updateSlots();
    }
}

bool LinuxMachHost::readCores() {
    for (;;) {
        const auto text = stat_.readBeginning(buffer_, statPrefix_);
        if (!text) {
            return false;
        }
        const bool isWholeFile = text->size() < statPrefix_;
        if (parseProcStatCores(*text, cores_) || isWholeFile || statPrefix_ == largestStatPrefix) {
            return !cores_.empty();
        }
        statPrefix_ = std::min(statPrefix_ * 2, largestStatPrefix);
    }
}

void LinuxMachHost::arrange() {
    arrangement_ += slots_.empty() ? 0 : 1;
    const auto earlier = std::exchange(slots_, {});
    const auto slotOfCpu = std::exchange(slotOfCpu_, {});
    for (const auto cpu : layout_.order()) {
        const auto slot = cpu < slotOfCpu.size() ? slotOfCpu[cpu] : -1;
        if (cpu >= slotOfCpu_.size()) {
            slotOfCpu_.resize(cpu + 1, -1);
        }
        slotOfCpu_[cpu] = static_cast<std::int32_t>(slots_.size());
        slots_.push_back(slot >= 0 ? earlier[static_cast<std::size_t>(slot)]
                                   : Slot{{.cpu = cpu}, {}, reading_, 0});
    }
    identities_.resize(slots_.size());
}

void LinuxMachHost::updateSlots() {
    ++reading_;
    if (layout_.follow(cores_)) {
        arrange();
    }
    for (const auto& core : cores_) {
        updateSlot(slots_[static_cast<std::size_t>(slotOfCpu_[core.cpu])], core);
    }
    for (std::size_t index = 0; index < slots_.size(); ++index) {
        identities_[index] = {slots_[index].latest.cpu, slots_[index].lastReading == reading_};
    }
}

void LinuxMachHost::updateSlot(Slot& slot, const CoreTicks& core) const {
    auto& [latest, total, firstReading, lastReading] = slot;
    const bool isFirst = lastReading == 0;
    const bool wasOffline = lastReading + 1 < reading_;
    const auto idleGrowth = static_cast<std::int32_t>(core.idle - latest.idle);
    if (isFirst && firstReading == reading_) {
        total = core;
    }
    if (isFirst || (wasOffline && idleGrowth < -largestDip)) {
        latest = core;
    }
    lastReading = reading_;
    advance(total.user, latest.user, core.user);
    advance(total.system, latest.system, core.system);
    advance(total.idle, latest.idle, core.idle);
    advance(total.nice, latest.nice, core.nice);
}

std::int32_t* LinuxMachHost::lendArray(std::size_t integerCount) {
    for (auto& array : arrays_) {
        if (!array.isLent && array.capacity >= integerCount) {
            array.isLent = true;
            return array.integers.get();
        }
    }
    // Arrays of an outdated size cannot be reused.
    std::erase_if(arrays_, [](const TickArray& array) { return !array.isLent; });
    arrays_.push_back({std::make_unique<std::int32_t[]>(integerCount), integerCount, true});
    return arrays_.back().integers.get();
}

std::optional<ProcessorLoadInfo> LinuxMachHost::hostProcessorInfo() {
    if (!readCores()) {
        return std::nullopt;
    }
    updateSlots();
    const std::size_t integerCount = slots_.size() * 4;
    std::int32_t* const integers = lendArray(integerCount);
    auto* next = integers;
    for (const auto& slot : slots_) {
        *next++ = static_cast<std::int32_t>(slot.total.user);
        *next++ = static_cast<std::int32_t>(slot.total.system);
        *next++ = static_cast<std::int32_t>(slot.total.idle);
        *next++ = static_cast<std::int32_t>(slot.total.nice);
    }
    return ProcessorLoadInfo{
        static_cast<std::uint32_t>(slots_.size()), {integers, integerCount}, identities_, arrangement_};
}

void LinuxMachHost::vmDeallocate(std::int32_t* address, std::size_t /*byteCount*/) {
    for (auto& array : arrays_) {
        if (array.integers.get() == address) {
            array.isLent = false;
        }
    }
}

std::optional<VirtualMemoryStatistics> LinuxMachHost::hostStatistics64() {
    const auto text = memInfo_.read(buffer_);
    const auto info = text ? parseMemoryInfo(*text) : std::nullopt;
    if (!info) {
        return std::nullopt;
    }
    return virtualMemoryStatistics(*info, pools_.read(clock_.monotonicNow(), buffer_), pageSize_);
}

std::optional<std::size_t> LinuxMachHost::hostPageSize() {
    return pageSize_;
}

}  // namespace kestro
