#pragma once

#include "core/platform/network_interfaces.h"
#include "platform/posix/descriptor.h"

#include <optional>
#include <vector>

namespace kestro {

/// Where the list of interfaces and addresses comes from: a call of the system, and so the one thing about a
/// machine's network that cannot be replayed from files. One thread at a time.
class InterfaceSource {
public:
    virtual ~InterfaceSource() = default;

    /// Every entry in the system's order, without statistics. nullopt: the call failed.
    virtual std::optional<std::vector<InterfaceEntry>> list() = 0;

    /// Whether the list may be another than when this was asked the last time; true at first.
    virtual bool hasChanged() = 0;
};

/// The running kernel's interfaces. It listens to the kernel's announcements of links and IPv4 addresses
/// (rtnetlink(7)), so that an unchanged list costs one system call; where it may not listen, the list counts as
/// changed every time.
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
