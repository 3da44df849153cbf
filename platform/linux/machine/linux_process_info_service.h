#pragma once

#include "core/platform/clock.h"
#include "core/platform/process_info_service.h"
#include "platform/linux/kernel/kernel_files.h"
#include "platform/linux/sensors/thermal_zones.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace kestro {

/// Memory size, thermal state and the system's name and version. Main thread.
///
/// Physical memory is the kernel's total. As in other Linux tools, a container's limit does not affect it unless
/// the container replaces /proc/meminfo. The thermal state is the worst of all zones. Reading a zone may cost a
/// firmware call, so it happens at most every other second.
class LinuxProcessInfoService final : public ProcessInfoService {
public:
    /// `root` is the mount point of the machine's file system.
    explicit LinuxProcessInfoService(const Clock& clock, std::string root = "/");

    /// 0: unknown.
    std::uint64_t physicalMemory() override;

    std::int64_t thermalState() override;

    /// The name is "Linux" if the distribution states none. The version is the kernel's for a rolling
    /// distribution, which has none.
    OperatingSystemVersion operatingSystemVersion() override;

private:
    struct Zone {
        PersistentFile temperature;
        std::vector<TripPoint> trips;
    };

    void findZones();

    const Clock& clock_;
    std::string root_;
    ReadBuffer buffer_;
    std::vector<Zone> zones_;
    std::optional<MonotonicTime> zonesFound_;
    std::optional<MonotonicTime> stateRead_;
    std::int64_t state_ = 0;
};

}  // namespace kestro
