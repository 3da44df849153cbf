#pragma once

#include "core/platform/clock.h"
#include "platform/linux/hwmon_chip.h"
#include "platform/linux/kernel_files.h"
#include "platform/linux/search_schedule.h"

#include <cstddef>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace kestro {

/// The machine's fans, found in hwmon. A header of a mainboard chip is listed once it has turned or when it has
/// a label: most headers have nothing connected to them. One thread at a time; allocates only in a search.
///
/// Between two checks of the schedule, a machine without fans pays nothing.
class HwmonFans {
public:
    explicit HwmonFans(std::string root);

    /// Brings the list up to date where that is due. Speeds in revolutions per minute; positions are those of
    /// the list until the next call.
    void refresh(MonotonicTime now);

    std::size_t count() const { return listed_.size(); }

    /// nullopt: no reading for the moment, or one that no fan can have. A sleeping graphics card's fan stands.
    std::optional<double> speed(std::size_t fan);

    /// nullopt: the fan has no such figure.
    std::optional<double> target(std::size_t fan);
    std::optional<double> minimum(std::size_t fan) const { return fanAt(fan).minimum.value; }
    std::optional<double> maximum(std::size_t fan) const { return fanAt(fan).maximum.value; }
    bool hasTarget(std::size_t fan) const { return fanAt(fan).target.has_value(); }

private:
    /// A figure that stays the same, read once. A device that sleeps or wakes up may not tell it at first.
    struct Limit {
        std::string path;  ///< empty: the fan has no such figure
        std::optional<double> value;
    };

    struct Fan {
        std::string identity;  ///< device, chip and label or number: the same after a renumbering
        PersistentFile input;
        std::optional<PersistentFile> target;
        Limit minimum;
        Limit maximum;
        SleepGate gate;
        bool isKnownToBeThere = true;  ///< it has a label, or was seen turning
        bool isRepeated = false;       ///< another chip of the machine tells its fans, too
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
    std::set<std::string> haveTurned_;  ///< identities of unlabelled headers that were seen turning
};

}  // namespace kestro
