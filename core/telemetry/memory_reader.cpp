#include "core/telemetry/memory_reader.h"

#include "core/platform/mach_host.h"
#include "core/platform/platform.h"
#include "core/platform/process_info_service.h"
#include "core/platform/system_control.h"

namespace kestro {

namespace {

constexpr std::size_t defaultPageSize = 16384;

const char* pressureText(std::int32_t level) {
    switch (level) {
        case 4:
            return "Critical";
        case 2:
            return "Warning";
        default:
            return "Normal";
    }
}

}  // namespace

MemoryReader::MemoryReader(MachHost& host, SystemControl& system, ProcessInfoService& processInfo)
    : host_(host),
      system_(system),
      totalMemory_(processInfo.physicalMemory()),
      pageSize_(host.hostPageSize().value_or(defaultPageSize)) {}

MemoryReader& MemoryReader::shared() {
    static auto* const reader = new MemoryReader(Platform::current().machHost, Platform::current().systemControl,
                                                 Platform::current().processInfo);
    return *reader;
}

MemoryTelemetry MemoryReader::read() {
    MemoryTelemetry record;
    record.totalBytes = totalMemory_;
    const auto statistics = host_.hostStatistics64();
    if (!statistics) {
        record.freeBytes = totalMemory_;
        return record;
    }
    const std::uint64_t page = pageSize_;
    record.activeBytes = statistics->activeCount * page;
    record.wiredBytes = statistics->wireCount * page;
    record.compressedBytes = statistics->compressorPageCount * page;
    record.inactiveBytes = statistics->inactiveCount * page;
    record.freeBytes = statistics->freeCount * page;
    record.usedBytes = record.activeBytes + record.wiredBytes + record.compressedBytes;

    if (const auto swap = system_.swapUsage()) {
        record.swapUsedBytes = swap->used;
        record.swapTotalBytes = swap->total;
    }
    record.pressureLevel =
        pressureText(system_.sysctlByNameInt32("kern.memorystatus_vm_pressure_level").value_or(1));
    return record;
}

}  // namespace kestro
