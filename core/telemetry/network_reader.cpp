#include "core/telemetry/network_reader.h"

#include "core/platform/network_interfaces.h"
#include "core/platform/platform.h"

namespace kestro {

namespace {

constexpr std::uint32_t decisiveFlags = interfaceUp | interfaceRunning | interfaceLoopback;

bool isActive(const InterfaceEntry& entry) {
    return (entry.flags & decisiveFlags) == (interfaceUp | interfaceRunning) && entry.address;
}

double rate(std::uint64_t now, std::uint64_t before, double seconds) {
    // Two calls at the same instant measure nothing.
    if (now <= before || before == 0 || seconds <= 0) {
        return 0;
    }
    return static_cast<double>(now - before) / seconds;
}

/// Accumulates one pass over the interfaces.
struct Walk {
    std::uint64_t bytesIn = 0;
    std::uint64_t bytesOut = 0;
    NetworkTelemetry record = NetworkTelemetry::initial();

    void visitAddress(const InterfaceEntry& entry, NetworkInterfaces& interfaces) {
        const auto text = interfaces.getnameinfo(*entry.address);
        if (text && !text->starts_with("127.") && record.localIP == "--") {
            record.localIP = *text;
            record.primaryInterface = entry.name;
        }
    }

    void visitLink(const InterfaceEntry& entry) {
        if (!entry.statistics) {
            return;
        }
        bytesIn += entry.statistics->receivedBytes;
        bytesOut += entry.statistics->sentBytes;
        // Also replaces an "en0" set from an address: list order decides.
        if (record.primaryInterface == "en0") {
            record.primaryInterface = entry.name;
        }
    }
};

}  // namespace

NetworkReader::NetworkReader(NetworkInterfaces& interfaces, Clock& clock)
    : interfaces_(interfaces), clock_(clock), previousTime_(clock.monotonicNow()) {}

NetworkReader& NetworkReader::shared() {
    static auto* const reader =
        new NetworkReader(Platform::current().networkInterfaces, Platform::current().clock);
    return *reader;
}

NetworkTelemetry NetworkReader::read() {
    const std::scoped_lock guard(lock_);
    Walk walk;
    const auto entries = interfaces_.getifaddrs();
    if (!entries || entries->empty()) {
        return walk.record;
    }
    for (const InterfaceEntry& entry : *entries) {
        if (!isActive(entry)) {
            continue;
        }
        if (entry.address->family == AddressFamily::ipv4) {
            walk.visitAddress(entry, interfaces_);
        } else if (entry.address->family == AddressFamily::link) {
            walk.visitLink(entry);
        }
    }

    const MonotonicTime now = clock_.monotonicNow();
    const double elapsed = std::chrono::duration<double>(now - previousTime_).count();
    walk.record.downloadBytesPerSec = rate(walk.bytesIn, previousBytesIn_, elapsed);
    walk.record.uploadBytesPerSec = rate(walk.bytesOut, previousBytesOut_, elapsed);
    previousBytesIn_ = walk.bytesIn;
    previousBytesOut_ = walk.bytesOut;
    previousTime_ = now;
    return walk.record;
}

}  // namespace kestro
