#pragma once

#include "core/platform/clock.h"
#include "core/platform/power_sources.h"
#include "platform/linux/kernel_files.h"
#include "platform/linux/power_supply.h"
#include "platform/linux/search_schedule.h"

#include <optional>
#include <string>
#include <vector>

namespace kestro {

/// The machine's batteries from /sys/class/power_supply, as one power source: a laptop with two batteries has one
/// charge to its user. Main thread. One read of an open file for each supply; the firmware behind some of them
/// can take some milliseconds, which the kernel's own cache limits to once a second.
class LinuxPowerSources final : public PowerSources {
public:
    /// `root` is where the machine's file system is mounted.
    explicit LinuxPowerSources(const Clock& clock, std::string root = "/");

    /// Empty without a battery. nullopt: the kernel has no power supplies at all.
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
    bool isSupported_ = false;  ///< whether the kernel has power supplies, as of the last check
    std::vector<Source> sources_;
    std::vector<PowerSupply> supplies_;
};

}  // namespace kestro
