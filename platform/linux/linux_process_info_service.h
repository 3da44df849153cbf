#pragma once

#include "core/platform/clock.h"
#include "core/platform/process_info_service.h"
#include "platform/linux/kernel_files.h"
#include "platform/linux/thermal_zones.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace kestro {

/// Memory size, thermal state and the system's name and version. Main thread.
///
/// Physical memory is what the kernel calls total; a container's own limit does not change it, as it does not
/// for any other Linux tool, unless the container replaces /proc/meminfo. The thermal state is the worst of
/// all zones; a zone's temperature can cost a firmware call, so it is asked for every other second at most.
class LinuxProcessInfoService final : public ProcessInfoService {
public:
    /// `root` is where the machine's file system is mounted.
    explicit LinuxProcessInfoService(const Clock& clock, std::string root = "/");

    /// 0: unknown.
    std::uint64_t physicalMemory() override;

    std::int64_t thermalState() override;

    /// The name is "Linux" where the distribution does not state one. The version is the kernel's where the
    /// distribution has none because it is updated without releases.
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
