#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace kestro {

/// Interface flags with the usual values of IFF_UP, IFF_LOOPBACK and IFF_RUNNING.
inline constexpr std::uint32_t interfaceUp = 0x1;
inline constexpr std::uint32_t interfaceLoopback = 0x8;
inline constexpr std::uint32_t interfaceRunning = 0x40;

/// The address families in use; all others cross the port as `other`.
enum class AddressFamily : std::uint8_t { other = 0, ipv4 = 2, link = 18 };

/// Traffic counters of a link-level entry, in bytes since an arbitrary time. They survive taking the interface
/// down and up, and restart at 0 when it is recreated.
struct InterfaceStatistics {
    std::uint64_t receivedBytes = 0;
    std::uint64_t sentBytes = 0;
};

/// An address: its family and, for IPv4, the four bytes in network order.
struct InterfaceAddress {
    AddressFamily family = AddressFamily::other;
    std::array<std::uint8_t, 4> ipv4{};
};

/// One entry of `getifaddrs`. An interface has several: one at link level and one per address.
struct InterfaceEntry {
    std::string name;
    std::uint32_t flags = 0;
    std::optional<InterfaceAddress> address;        ///< absent: the entry has no address
    std::optional<InterfaceStatistics> statistics;  ///< link level only; absent: no counters
};

/// The machine's network interfaces. Main thread.
class NetworkInterfaces {
public:
    virtual ~NetworkInterfaces() = default;

    /// Every entry in the system's order, owned by the port and valid until the next call of this function.
    /// nullopt: the call failed. An interface that only repeats another's traffic has no link-level entry.
    virtual std::optional<std::span<const InterfaceEntry>> getifaddrs() = 0;

    /// The numeric text of an address (NI_NUMERICHOST); nullopt: it cannot be formatted.
    virtual std::optional<std::string> getnameinfo(const InterfaceAddress& address) = 0;
};

}  // namespace kestro
