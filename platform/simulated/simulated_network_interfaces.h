#pragma once

#include "core/platform/network_interfaces.h"
#include "platform/simulated/simulated_failure.h"
#include "platform/simulated/simulated_pattern.h"

#include <vector>

namespace kestro {

/// Interfaces in a given order: by default the loopback, "en0" with an address, and an idle "awdl0". Unless
/// frozen, the counters of the first entry that is up and not the loopback grow.
class SimulatedNetworkInterfaces final : public NetworkInterfaces {
public:
    explicit SimulatedNetworkInterfaces(const SimulatedPattern& pattern);

    std::optional<std::span<const InterfaceEntry>> getifaddrs() override;
    std::optional<std::string> getnameinfo(const InterfaceAddress& address) override;

    /// Entries for the list below, up and running unless `flags` differ.
    static InterfaceEntry link(std::string name, std::uint64_t receivedBytes, std::uint64_t sentBytes,
                               std::uint32_t flags = interfaceUp | interfaceRunning);
    static InterfaceEntry ipv4(std::string name, std::array<std::uint8_t, 4> address,
                               std::uint32_t flags = interfaceUp | interfaceRunning);

    SimulatedFailure interfacesFailure;
    SimulatedFailure nameInfoFailure;
    std::vector<InterfaceEntry> entries;
    double downloadBytesPerSec = 900'000;  ///< mean rates
    double uploadBytesPerSec = 190'000;

private:
    void work();

    const SimulatedPattern& pattern_;
    SimulatedStretch stretch_;
};

}  // namespace kestro
