#pragma once

#include "core/platform/clock.h"
#include "core/telemetry/network_telemetry.h"

#include <cstdint>
#include <mutex>

namespace kestro {

class NetworkInterfaces;

/// Measures the throughput of all active interfaces between two readings and determines the local address. Any
/// thread, one call at a time.
class NetworkReader {
public:
    NetworkReader(NetworkInterfaces& interfaces, Clock& clock);
    NetworkReader(const NetworkReader&) = delete;
    NetworkReader& operator=(const NetworkReader&) = delete;

    /// The process-wide reader on the current platform, created on first use.
    static NetworkReader& shared();

    /// Rates since the previous call. The first call and a counter that went backwards yield 0. If the interfaces
    /// cannot be listed, both rates are 0, the texts are "en0" and "--", and the next call measures across the
    /// gap.
    NetworkTelemetry read();

private:
    NetworkInterfaces& interfaces_;
    Clock& clock_;
    std::uint64_t previousBytesIn_ = 0;
    std::uint64_t previousBytesOut_ = 0;
    MonotonicTime previousTime_;
    std::mutex lock_;
};

}  // namespace kestro
