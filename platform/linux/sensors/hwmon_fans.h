#pragma once

#include "core/platform/clock.h"
#include "platform/linux/kernel/kernel_files.h"
#include "platform/linux/kernel/search_schedule.h"
#include "platform/linux/sensors/hwmon_chip.h"
#include "platform/linux/sensors/sleeping_devices.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace kestro {

/// The machine's fans, found in hwmon. A fan header on a mainboard chip is listed if it has a label or once its
/// fan has turned, because most headers are unused. One thread at a time; allocates only during a search. A
/// machine without fans costs nothing between two scheduled checks.
///
/// The fans of a device that can fall asleep are read only while it is awake, and rarely enough to let it fall
/// asleep; in between, they keep their last readings for up to a minute.
class HwmonFans {
public:
    /// `devices` is shared with the temperature sensors' owner.
    HwmonFans(std::string root, std::shared_ptr<SleepingDevices> devices);

    /// Updates the list if due. Speeds in revolutions per minute; positions refer to the list and are valid until
    /// the next call.
    void refresh(MonotonicTime now);

    std::size_t count() const { return listed_.size(); }

    /// nullopt: no reading at the moment, or an implausible one. The fan of a sleeping device reads 0.
    std::optional<double> speed(std::size_t fan, MonotonicTime now);

    /// nullopt: the fan has no such value, or one that it cannot reach because its speed is not regulated.
    std::optional<double> target(std::size_t fan, MonotonicTime now);
    std::optional<double> minimum(std::size_t fan) const { return fanAt(fan).minimum.value; }
    std::optional<double> maximum(std::size_t fan) const { return fanAt(fan).maximum.value; }
    bool hasTarget(std::size_t fan) const { return fanAt(fan).target.has_value(); }

    /// What the driver calls the fan, such as "Left side"; empty if it has no label.
    const std::string& label(std::size_t fan) const { return fanAt(fan).label; }

private:
    /// A constant value, read once. A device that is asleep or waking up may not report it at first.
    struct Limit {
        std::optional<PersistentFile> file;  ///< nullopt: the fan has no such value, or it was read
        std::optional<double> value;
    };

    struct Reading {
        PersistentFile file;
        std::optional<double> last;
        std::optional<MonotonicTime> readAt = std::nullopt;
    };

    struct Fan {
        std::string identity;  ///< device, chip and label or number: survives renumbering
        std::string label;
        Reading input;
        std::optional<Reading> target;
        Limit minimum;
        Limit maximum;
        std::shared_ptr<SleepingDevice> device;
        bool isKnownToBeThere = true;  ///< it has a label, or was seen turning
        bool isOnMainboard = false;
        bool isGraphics = false;
        bool isRepeated = false;  ///< another chip reports the same fans
    };

    void search();
    void addFans(const HwmonChip& chip);
    void readLimits(Fan& fan, MonotonicTime now);
    void listFans(MonotonicTime now);
    std::optional<double> read(const Fan& fan, Reading& reading, std::optional<double> whileAsleep,
                               MonotonicTime now);
    static SleepingDevice::Access access(const Fan& fan, MonotonicTime now);
    const Fan& fanAt(std::size_t fan) const { return fans_[listed_[fan]]; }

    std::string root_;
    std::shared_ptr<SleepingDevices> devices_;
    ReadBuffer buffer_;
    SearchSchedule schedule_;
    std::vector<Fan> fans_;
    std::vector<std::size_t> listed_;   ///< positions in `fans_`
    std::set<std::string> haveTurned_;  ///< identities of unlabelled headers whose fan has turned
};

}  // namespace kestro
