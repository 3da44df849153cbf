#include "core/telemetry/disk_reader.h"

#include "core/platform/file_system_statistics.h"
#include "core/platform/platform.h"

namespace kestro {

DiskReader& DiskReader::shared() {
    static auto* const reader = new DiskReader(Platform::current().fileSystem);
    return *reader;
}

DiskTelemetry DiskReader::read() {
    DiskTelemetry record = DiskTelemetry::initial();
    const auto status = fileSystem_.statvfs("/");
    if (!status) {
        return record;
    }
    record.totalBytes = status->blocks * status->fragmentSize;
    record.freeBytes = status->availableBlocks * status->fragmentSize;
    record.mount = fileSystem_.statfs("/");
    record.usedBytes = record.totalBytes > record.freeBytes ? record.totalBytes - record.freeBytes : 0;
    return record;
}

}  // namespace kestro
