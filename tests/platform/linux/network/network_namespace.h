#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace kestro::test {

/// Creates interfaces in a network namespace of the calling process's own, by rtnetlink(7). For a child process
/// that ends soon, and its interfaces with it. Every call returns false when this kernel or user may not do it.
class NetworkNamespace {
public:
    /// Enters a new namespace and mounts its /sys and /proc below `root`, an empty directory.
    static bool enter(const std::string& root);

    /// `flags`: IFF_TUN or IFF_TAP.
    static bool addTun(const std::string& name, int flags);
    static bool addVethPair(const std::string& name, const std::string& peer);
    static bool addVlan(const std::string& name, const std::string& lower, std::uint16_t id);

    /// A bridge, a bond or a WireGuard interface.
    static bool add(std::string_view kind, const std::string& name);

    /// Makes an interface, which is down, a port of a bridge or bond.
    static bool setMaster(const std::string& name, const std::string& master);
    static bool setUp(const std::string& name);

    /// Waits a few seconds at most until the kernel, which follows carriers in the background, reports the
    /// interface as running.
    static void awaitRunning(const std::string& name);
};

}  // namespace kestro::test
