#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace kestro {

/// What decides whether an interface has traffic of its own.
struct InterfaceFacts {
    std::string name;
    bool isLoopback = false;
    bool isUp = false;        ///< up and running
    bool isHardware = false;  ///< a device stands behind it
    bool isBridge = false;
    bool isBridgePort = false;            ///< a member of a bridge
    bool isTunnel = false;                ///< tun, tap, WireGuard, point-to-point and the like
    std::vector<std::string> lowerNames;  ///< interfaces of this machine that it rides on
};

/// The facts from /sys/class/net; `isLoopback` and `isUp` are the caller's. An interface that is not there, or
/// whose name is no file name, has none.
InterfaceFacts readInterfaceFacts(const std::string& root, const std::string& name);

/// What an interface's traffic is to the machine.
enum class InterfaceStanding : std::uint8_t {
    counted,  ///< traffic of its own
    carried,  ///< repeats what the hardware below it moves: a bond, a VLAN, a bridge above hardware
    inner,    ///< repeats it too, and leads to containers, virtual machines or a tunnel's far end
};

/// The standing of each interface among the others.
///
/// Hardware that does not ride on other hardware and the loopback interface are always counted. Whatever rides on
/// another interface is not (bonds, VLANs, bridges above hardware), nor are the members of a bridge. What is left
/// has no hardware below it and repeats whatever hardware is up (bridges of containers, tun, WireGuard); without
/// any, the first of these groups that is up is counted: a container's veth and other plain interfaces, then
/// bridges, then tunnels.
std::vector<InterfaceStanding> standings(const std::vector<InterfaceFacts>& interfaces);

}  // namespace kestro
