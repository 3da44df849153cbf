#pragma once

#include "core/platform/clock.h"
#include "platform/linux/hwmon_chip.h"
#include "platform/linux/kernel_files.h"
#include "platform/linux/search_schedule.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace kestro {

/// The machine's temperature sensors: those of hwmon, the batteries' own, and the thermal zones where hwmon has
/// none of the processor die. Sensors of the die come first, ACPI's coarse zone last; that one stands for the
/// processor where nothing else does. One thread at a time.
///
/// Drives and memory modules are asked every ten seconds at most, since a reading is a command to the device,
/// and a sleeping graphics card not at all.
class TemperatureSensors {
public:
    explicit TemperatureSensors(std::string root);

    /// Brings the list up to date where that is due; positions are those of the list until the next call.
    void refresh(MonotonicTime now);

    std::size_t count() const { return sensors_.size(); }
    const std::string& name(std::size_t sensor) const { return sensors_[sensor].name; }

    /// Degrees Celsius. nullopt: no reading for the moment; the sensor keeps its place.
    std::optional<double> temperature(std::size_t sensor, MonotonicTime now);

private:
    enum class Place : std::uint8_t { die, elsewhere, battery, firmware };

    struct Sensor {
        std::string name;
        Place place = Place::elsewhere;
        PersistentFile file;
        double unitsPerDegree = 1000;
        SleepGate gate;
        bool isSlow = false;
        std::optional<MonotonicTime> readAt;
        std::optional<double> last;
    };

    void search();
    bool isAnyRepaired() const;
    bool isUnconnected(const HwmonChip& chip, std::uint32_t number, const std::optional<std::string>& label);
    void addChip(const HwmonChip& chip);
    void addBatteries();
    void addZones(const std::vector<HwmonChip>& chips);
    void settleNames(const std::vector<HwmonChip>& chips);
    std::optional<double> read(Sensor& sensor);

    std::string root_;
    ReadBuffer buffer_;
    SearchSchedule schedule_;
    std::vector<Sensor> sensors_;
    std::vector<std::string> faults_;  ///< files by which inputs said at the search that they measure nothing
};

}  // namespace kestro
