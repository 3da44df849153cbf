#pragma once

#include "core/platform/clock.h"
#include "core/platform/system_control.h"
#include "platform/linux/kernel/kernel_files.h"
#include "platform/linux/machine/core_layout.h"
#include "platform/linux/machine/memory_pools.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kestro {

/// The named kernel state that the Mac's readers query, from /proc and /sys. Main thread.
///
/// Performance levels count the logical cores, whether online or not, consistent with the order of the tick
/// arrays. A machine with one kind of core has only level 0. A query for the count of level 0 looks at the cores
/// anew; the other three describe the same state. Swap and pressure, which are queried on every tick, are read
/// from open descriptors without allocating.
class LinuxSystemControl final : public SystemControl {
public:
    /// `root` is the mount point of the machine's file system.
    explicit LinuxSystemControl(const Clock& clock, std::string root = "/");

    std::optional<std::int32_t> sysctlByNameInt32(std::string_view name) override;
    std::optional<std::string> sysctlByNameText(std::string_view name) override;
    std::optional<SwapUsage> swapUsage() override;
    std::optional<TimeValue> bootTime() override;

private:
    void countCores();
    const CoreLayout& cores();
    std::optional<std::int32_t> memoryPressureLevel();

    const Clock& clock_;
    std::string root_;
    ReadBuffer buffer_;
    PersistentFile pressure_;
    PersistentFile swaps_;
    PersistentFile memInfo_;
    MemoryPoolReader pools_;
    CoreLayout cores_;
    bool areCoresCounted_ = false;
};

}  // namespace kestro
