#pragma once

#include <string>

namespace kestro {

/// One sample of the network throughput, summed over the active interfaces, in bytes per second.
struct NetworkTelemetry {
    double uploadBytesPerSec = 0;
    double downloadBytesPerSec = 0;
    std::string primaryInterface;  ///< an interface name such as "en0"
    std::string localIP;           ///< dotted IPv4 text; "--" when unknown

    /// Shown before the first sample.
    static NetworkTelemetry initial() { return {0, 0, "en0", "--"}; }

    friend bool operator==(const NetworkTelemetry&, const NetworkTelemetry&) = default;
};

}  // namespace kestro
