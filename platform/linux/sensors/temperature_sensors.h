#pragma once

#include "core/platform/clock.h"
#include "platform/linux/kernel/kernel_files.h"
#include "platform/linux/kernel/search_schedule.h"
#include "platform/linux/sensors/hwmon_chip.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace kestro {

/// The machine's temperature sensors: those of hwmon, those in the batteries, and thermal zones if hwmon has none
/// for the processor die. Die sensors come first. The coarse ACPI zone comes last and serves as the die sensor if
/// there is no other. One thread at a time.
///
/// Reads drives and memory modules at most every ten seconds, since each reading sends a command to the device,
/// and never reads a sleeping graphics card.
class TemperatureSensors {
public:
    explicit TemperatureSensors(std::string root);

    /// Updates the list if due; positions refer to the list and are valid until the next call.
    void refresh(MonotonicTime now);

    std::size_t count() const { return sensors_.size(); }
    const std::string& name(std::size_t sensor) const { return sensors_[sensor].name; }

    /// Degrees Celsius. nullopt: no reading at the moment; the sensor keeps its position.
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
    std::vector<std::string> faults_;  ///< fault files of inputs that measured nothing at the last search
};

}  // namespace kestro
