#include "platform/simulated/simulated_network_interfaces.h"

#include <fmt/ranges.h>

#include <algorithm>

namespace kestro {

namespace {

constexpr std::uint32_t downChannel = 201;
constexpr std::uint32_t upChannel = 203;

double trafficAt(const SimulatedPattern& pattern, std::uint32_t channel, double moment) {
    return 1 + 0.4 * pattern.waveAt(channel, moment) + 5 * pattern.burstAt(channel, moment);
}

}  // namespace

SimulatedNetworkInterfaces::SimulatedNetworkInterfaces(const SimulatedPattern& pattern) : pattern_(pattern) {
    const std::uint32_t loopback = interfaceUp | interfaceRunning | interfaceLoopback;
    entries = {
        link("lo0", 81'204'122, 81'204'122, loopback), ipv4("lo0", {127, 0, 0, 1}, loopback),
        link("en0", 4'812'204'800, 911'023'104),       ipv4("en0", {192, 168, 1, 24}),
        link("awdl0", 104'448, 88'064, interfaceUp),
    };
}

std::optional<std::span<const InterfaceEntry>> SimulatedNetworkInterfaces::getifaddrs() {
    if (interfacesFailure.strikes()) {
        return std::nullopt;
    }
    work();
    return entries;
}

std::optional<std::string> SimulatedNetworkInterfaces::getnameinfo(const InterfaceAddress& address) {
    if (nameInfoFailure.strikes() || address.family != AddressFamily::ipv4) {
        return std::nullopt;
    }
    return fmt::format("{}", fmt::join(address.ipv4, "."));
}

InterfaceEntry SimulatedNetworkInterfaces::link(std::string name, std::uint64_t receivedBytes,
                                                std::uint64_t sentBytes, std::uint32_t flags) {
    return {std::move(name), flags, InterfaceAddress{AddressFamily::link, {}},
            InterfaceStatistics{receivedBytes, sentBytes}};
}

InterfaceEntry SimulatedNetworkInterfaces::ipv4(std::string name, std::array<std::uint8_t, 4> address,
                                                std::uint32_t flags) {
    return {std::move(name), flags, InterfaceAddress{AddressFamily::ipv4, address}, std::nullopt};
}

void SimulatedNetworkInterfaces::work() {
    stretch_.catchUp(pattern_.seconds(), [this](double moment, double length) {
        const auto busy = std::ranges::find_if(entries, [](const InterfaceEntry& entry) {
            return entry.statistics && (entry.flags & interfaceRunning) && !(entry.flags & interfaceLoopback);
        });
        if (busy == entries.end()) {
            return;
        }
        busy->statistics->receivedBytes +=
            static_cast<std::uint64_t>(downloadBytesPerSec * length * trafficAt(pattern_, downChannel, moment));
        busy->statistics->sentBytes +=
            static_cast<std::uint64_t>(uploadBytesPerSec * length * trafficAt(pattern_, upChannel, moment));
    });
}

}  // namespace kestro
