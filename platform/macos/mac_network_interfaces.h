#pragma once

#include "core/platform/network_interfaces.h"

#include <vector>

namespace kestro {

/// getifaddrs(3) and getnameinfo(3). Main thread. The kernel's counters of bytes have 32 bits and wrap. Bridges,
/// VLANs, aggregates and tunnels have no link-level entry: they repeat the traffic of the interfaces below.
class MacNetworkInterfaces final : public NetworkInterfaces {
public:
    std::optional<std::span<const InterfaceEntry>> getifaddrs() override;
    std::optional<std::string> getnameinfo(const InterfaceAddress& address) override;

private:
    std::vector<InterfaceEntry> entries_;
};

}  // namespace kestro
