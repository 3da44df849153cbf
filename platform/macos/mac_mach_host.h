#pragma once

#include "core/platform/mach_host.h"
#include "platform/macos/owned.h"

namespace kestro {

/// The host port of the kernel. Main thread.
class MacMachHost final : public MachHost {
public:
    MacMachHost();

    std::optional<ProcessorLoadInfo> hostProcessorInfo() override;
    void vmDeallocate(std::int32_t* address, std::size_t byteCount) override;
    std::optional<VirtualMemoryStatistics> hostStatistics64() override;
    std::optional<std::size_t> hostPageSize() override;

private:
    // Each call of `mach_host_self` adds a reference to the port's name.
    SendRight host_;
};

}  // namespace kestro
