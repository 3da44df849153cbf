#pragma once

#include "core/platform/network_interfaces.h"
#include "platform/posix/descriptor.h"

#include <optional>
#include <vector>

struct ifaddrs;

namespace kestro {

/// An entry of getifaddrs(3), without statistics. A link-level entry without an address is that of a tun,
/// WireGuard, PPP or modem interface, which has no hardware address; only link-level entries have data.
InterfaceEntry interfaceEntry(const ifaddrs& entry);

/// The source of the interface and address list. It is a system call, so it is the only part of a machine's
/// network that cannot be replayed from files. One thread at a time.
class InterfaceSource {
public:
    virtual ~InterfaceSource() = default;

    /// Every entry in the system's order, without statistics. nullopt: the call failed.
    virtual std::optional<std::vector<InterfaceEntry>> list() = 0;

    /// Whether the list may have changed since the previous call; true on the first call.
    virtual bool hasChanged() = 0;
};

/// The running kernel's interfaces. Subscribes to the kernel's link and IPv4 address notifications (rtnetlink(7)),
/// so an unchanged list costs one system call. If it cannot subscribe, it always reports a change.
class KernelInterfaceSource final : public InterfaceSource {
public:
    KernelInterfaceSource();

    std::optional<std::vector<InterfaceEntry>> list() override;
    bool hasChanged() override;

private:
    Descriptor announcements_;
    bool isFirst_ = true;
};

}  // namespace kestro
