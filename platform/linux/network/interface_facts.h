#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace kestro {

/// The facts that decide whether an interface has traffic of its own.
struct InterfaceFacts {
    std::string name;
    bool isLoopback = false;
    bool isUp = false;        ///< up and running
    bool isHardware = false;  ///< backed by a device, or by a serial line or modem
    bool isBridge = false;
    bool isBridgePort = false;            ///< a member of a bridge
    bool isTunnel = false;                ///< tun, tap, WireGuard, PPP over another interface etc.
    std::vector<std::string> lowerNames;  ///< local interfaces directly below it
};

/// Reads the facts from /sys/class/net; the caller sets `isLoopback` and `isUp`. An interface that does not exist,
/// or whose name is not a valid file name, has no facts.
InterfaceFacts readInterfaceFacts(const std::string& root, const std::string& name);

/// How an interface's traffic counts towards the machine's total.
enum class InterfaceStanding : std::uint8_t {
    counted,  ///< traffic of its own
    carried,  ///< repeats what the hardware below it moves: a bond, a VLAN, a bridge above hardware
    inner,    ///< repeats it too, towards containers, virtual machines or a tunnel's far end
};

/// The standing of each interface relative to the others.
///
/// The loopback interface, and hardware without other hardware below it, are always counted. An interface on top
/// of another is not (bonds, VLANs, bridges above hardware), nor are members of a bridge. The rest have no
/// hardware below and repeat the traffic of any hardware that is up (container bridges, tun, WireGuard). If no
/// hardware is up, the first of these groups with an interface that is up is counted: plain interfaces such as a
/// container's veth, then bridges, then tunnels.
std::vector<InterfaceStanding> standings(const std::vector<InterfaceFacts>& interfaces);

}  // namespace kestro
