#pragma once

#include "core/platform/network_interfaces.h"
#include "platform/linux/kernel/kernel_files.h"
#include "platform/linux/network/counted_traffic.h"
#include "platform/linux/network/interface_source.h"
#include "platform/linux/network/interface_traffic.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace kestro {

/// The machine's interfaces with 64-bit counters. Main thread. While the interface list is unchanged, a call costs
/// a single read of /proc/net/dev. Interfaces that only repeat the traffic of others have no link-level entry and
/// come last, those of containers and tunnels at the very end. When a link joins those with traffic of their own,
/// its counters start at 0.
class LinuxNetworkInterfaces final : public NetworkInterfaces {
public:
    /// `root` is the mount point of the machine's file system. Without a `source`, uses the running kernel.
    explicit LinuxNetworkInterfaces(std::string root = "/", std::unique_ptr<InterfaceSource> source = nullptr);

    std::optional<std::span<const InterfaceEntry>> getifaddrs() override;
    std::optional<std::string> getnameinfo(const InterfaceAddress& address) override;

private:
    bool refreshEntries();
    void followLinks();

    std::string root_;
    std::unique_ptr<InterfaceSource> source_;
    ReadBuffer buffer_;
    PersistentFile counters_;
    std::vector<InterfaceTraffic> traffic_;
    std::optional<std::vector<InterfaceEntry>> entries_;
    CountedTraffic counted_;
    bool areLinksFollowed_ = false;  ///< whether `counted_` has seen the links of `entries_`
};

}  // namespace kestro
