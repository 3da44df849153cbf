#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kestro {

/// The fields of the kernel's swap-usage record that are in use, in bytes.
struct SwapUsage {
    std::uint64_t total = 0;
    std::uint64_t used = 0;
};

/// A kernel time value: seconds since the Unix epoch, and the microseconds within the second.
struct TimeValue {
    std::int64_t seconds = 0;
    std::int64_t microseconds = 0;
};

/// Kernel state by name. Main thread. Every call returns nullopt for a name that this kernel lacks.
class SystemControl {
public:
    virtual ~SystemControl() = default;

    /// `sysctlbyname` into a signed 32-bit integer. Names in use: "hw.perflevel0.physicalcpu",
    /// "hw.perflevel1.physicalcpu", "kern.memorystatus_vm_pressure_level" (1 normal, 2 warning, 4 critical).
    virtual std::optional<std::int32_t> sysctlByNameInt32(std::string_view name) = 0;

    /// `sysctlbyname` into text, up to the first zero byte. Names in use: "hw.perflevel0.name",
    /// "hw.perflevel1.name", "hw.model", "machdep.cpu.brand_string".
    virtual std::optional<std::string> sysctlByNameText(std::string_view name) = 0;

    /// "vm.swapusage". Zeros on a machine without swap.
    virtual std::optional<SwapUsage> swapUsage() = 0;

    /// {CTL_KERN, KERN_BOOTTIME}.
    virtual std::optional<TimeValue> bootTime() = 0;
};

}  // namespace kestro
