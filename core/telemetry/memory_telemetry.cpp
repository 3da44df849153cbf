#include "core/telemetry/memory_telemetry.h"

namespace kestro {

double MemoryTelemetry::usedPercentage() const {
    if (totalBytes == 0) {
        return 0;
    }
    return static_cast<double>(usedBytes) / static_cast<double>(totalBytes) * 100;
}

}  // namespace kestro
