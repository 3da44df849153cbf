#pragma once

#include "core/platform/power_events.h"
#include "platform/posix/descriptor.h"

#include <string_view>

namespace kestro {

class RunLoop;

/// Whether a kernel event (Documentation/admin-guide/abi, uevent: "action@path", then KEY=value, each ended by a
/// zero byte) concerns a power supply.
bool isPowerSupplyEvent(std::string_view event);

/// The kernel's events of power supplies, which it multicasts to every process. The watch waits on a thread of its
/// own, which sleeps until something happens. A forged event costs one more sample, so the sender is not verified.
class LinuxPowerEvents final : public PowerEvents {
public:
    /// Opens the source of the events, one datagram each; closed: there is none.
    using Open = Descriptor (*)();

    explicit LinuxPowerEvents(RunLoop& runLoop, Open open = openKernelEvents) : runLoop_(runLoop), open_(open) {}

    [[nodiscard]] std::unique_ptr<PowerEventSource> watch(std::function<void()> handler) override;

private:
    static Descriptor openKernelEvents();

    RunLoop& runLoop_;
    const Open open_;
};

}  // namespace kestro
