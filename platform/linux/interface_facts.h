#pragma once

#include <cstddef>
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

/// For each interface, whether it only repeats the traffic of another one and must not be counted as well.
///
/// Hardware that does not ride on other hardware and the loopback interface never do. Whatever rides on another
/// interface does (bonds, VLANs, bridges above hardware), as do the members of a bridge. What is left has no
/// hardware below it and repeats whatever hardware is up (bridges of containers, tun, WireGuard); without any, the
/// first of these groups that is up counts: a container's veth and other plain interfaces, then bridges, then
/// tunnels.
std::vector<bool> repeatsTraffic(const std::vector<InterfaceFacts>& interfaces);

}  // namespace kestro
