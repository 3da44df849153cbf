#pragma once

#include "core/platform/clock.h"
#include "core/platform/power_sources.h"
#include "platform/linux/battery/power_supply.h"
#include "platform/linux/kernel/kernel_files.h"
#include "platform/linux/kernel/search_schedule.h"

#include <optional>
#include <string>
#include <vector>

namespace kestro {

/// The machine's batteries from /sys/class/power_supply as a single power source: to the user, a laptop with two
/// batteries has one charge. Main thread. Costs one read of an open file per supply. Some firmware takes several
/// milliseconds; the kernel's cache limits that to once a second.
class LinuxPowerSources final : public PowerSources {
public:
    /// `root` is the mount point of the machine's file system.
    explicit LinuxPowerSources(const Clock& clock, std::string root = "/");

    /// Empty without a battery. nullopt: the kernel does not support power supplies.
    std::optional<std::vector<std::optional<PowerSourceDescription>>> copyDescriptions() override;

private:
    struct Source {
        std::string directory;
        PersistentFile properties;
        PowerSupply::Kind kind = PowerSupply::Kind::other;
    };

    void search();
    PowerSupply read(Source& source);

    const Clock& clock_;
    std::string directory_;
    ReadBuffer buffer_;
    SearchSchedule schedule_;
    bool isSupported_ = false;  ///< whether the kernel supports power supplies, as of the last check
    std::vector<Source> sources_;
    std::vector<PowerSupply> supplies_;
};

}  // namespace kestro
