#pragma once

#include "core/platform/clock.h"
#include "platform/linux/kernel/kernel_files.h"
#include "platform/linux/kernel/search_schedule.h"
#include "platform/linux/sensors/hwmon_chip.h"

#include <cstddef>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace kestro {

/// The machine's fans, found in hwmon. A fan header on a mainboard chip is listed if it has a label or once its
/// fan has turned, because most headers are unused. One thread at a time; allocates only during a search. A
/// machine without fans costs nothing between two scheduled checks.
class HwmonFans {
public:
    explicit HwmonFans(std::string root);

    /// Updates the list if due. Speeds in revolutions per minute; positions refer to the list and are valid until
    /// the next call.
    void refresh(MonotonicTime now);

    std::size_t count() const { return listed_.size(); }

    /// nullopt: no reading at the moment, or an implausible one. The fan of a sleeping graphics card reads 0.
    std::optional<double> speed(std::size_t fan);

    /// nullopt: the fan has no such value, or one above its maximum.
    std::optional<double> target(std::size_t fan);
    std::optional<double> minimum(std::size_t fan) const { return fanAt(fan).minimum.value; }
    std::optional<double> maximum(std::size_t fan) const { return fanAt(fan).maximum.value; }
    bool hasTarget(std::size_t fan) const { return fanAt(fan).target.has_value(); }

private:
    /// A constant value, read once. A device that is asleep or waking up may not report it at first.
    struct Limit {
        std::string path;  ///< empty: the fan has no such value
        std::optional<double> value;
    };

    struct Fan {
        std::string identity;  ///< device, chip and label or number: survives renumbering
        PersistentFile input;
        std::optional<PersistentFile> target;
        Limit minimum;
        Limit maximum;
        SleepGate gate;
        bool isKnownToBeThere = true;  ///< it has a label, or was seen turning
        bool isRepeated = false;       ///< another chip reports the same fans
    };

    void search();
    void addFans(const HwmonChip& chip);
    void readLimits(Fan& fan);
    void listFans();
    std::optional<double> read(PersistentFile& file);
    const Fan& fanAt(std::size_t fan) const { return fans_[listed_[fan]]; }

    std::string root_;
    ReadBuffer buffer_;
    SearchSchedule schedule_;
    std::vector<Fan> fans_;
    std::vector<std::size_t> listed_;   ///< positions in `fans_`
    std::set<std::string> haveTurned_;  ///< identities of unlabelled headers whose fan has turned
};

}  // namespace kestro
