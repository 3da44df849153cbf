#pragma once

#include "core/platform/clock.h"
#include "platform/linux/kernel/kernel_files.h"
#include "platform/linux/kernel/search_schedule.h"
#include "platform/linux/sensors/die_rank.h"
#include "platform/linux/sensors/hwmon_chip.h"
#include "platform/linux/sensors/reading_history.h"
#include "platform/linux/sensors/sleeping_devices.h"
#include "platform/linux/sensors/thermal_zones.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace kestro {

/// The machine's temperature sensors: those of hwmon, those in the batteries, and thermal zones if no chip
/// measures the processor die. One thread at a time.
///
/// The die's sensors come first: those of the best rank that measures something. Where only the machine's own
/// controller is left, its hottest input represents the die, whichever input that is at the moment. An ACPI zone
/// that never moves is not the die.
///
/// Drives and memory modules are read at most every ten seconds, since each reading sends a command to the device.
/// A device that can fall asleep is read only while it is awake, and rarely enough to let it fall asleep.
class TemperatureSensors {
public:
    /// `devices` is shared with the fans' owner.
    TemperatureSensors(std::string root, std::shared_ptr<SleepingDevices> devices);

    /// Updates the list if due; positions refer to the list and are valid until the next call.
    void refresh(MonotonicTime now);

    std::size_t count() const { return sensors_.size(); }

    /// Counts as a die sensor for the thermal reader if and only if the sensor measures the die.
    const std::string& name(std::size_t sensor) const;

    /// Degrees Celsius. nullopt: no reading at the moment, or one of an input that seems unconnected; the sensor
    /// keeps its position.
    std::optional<double> temperature(std::size_t sensor, MonotonicTime now);

private:
    /// Where a sensor is in the list.
    enum class Place : std::uint8_t { die, elsewhere, battery, firmware };

    struct Sensor {
        std::string name;     ///< while it does not measure the die
        std::string dieName;  ///< while it does
        DieRank rank = DieRank::none;
        bool isBattery = false;
        bool isTrusted = true;          ///< false for an ACPI zone that seems constant
        bool mayBeUnconnected = false;  ///< of the board or the firmware, which list inputs that measure nothing
        bool isSlow = false;
        PersistentFile file;
        double unitsPerDegree = 1000;
        std::shared_ptr<SleepingDevice> device;
        std::optional<MonotonicTime> readAt;
        std::optional<double> last;
        std::optional<std::optional<double>> readAhead;  ///< the reading of this sample, if taken already
        ReadingHistory history;
    };

    void search(MonotonicTime now);
    bool isAnyRepaired() const;
    bool isUnconnected(const HwmonChip& chip, std::uint32_t number, const std::optional<std::string>& label);
    void addChip(const HwmonChip& chip, bool isZone);
    void addBatteries();
    void addZones(const std::vector<HwmonChip>& chips, std::vector<ThermalZone> zones);
    void nameSensor(Sensor& sensor, std::string name);
    void probeDie(std::size_t from, MonotonicTime now);
    void chooseDie(MonotonicTime now);
    void chooseHottest(MonotonicTime now);
    Place place(const Sensor& sensor) const;
    bool isDie(const Sensor& sensor) const;
    bool seemsUnconnected(const Sensor& sensor, double value) const;
    std::optional<double> take(Sensor& sensor, MonotonicTime now);
    std::optional<double> read(Sensor& sensor);

    std::string root_;
    std::shared_ptr<SleepingDevices> devices_;
    ReadBuffer buffer_;
    SearchSchedule schedule_;
    std::vector<Sensor> sensors_;
    std::vector<std::string> faults_;  ///< fault files of inputs that measured nothing at the last search
    DieRank dieRank_ = DieRank::none;
    const Sensor* hottest_ = nullptr;  ///< of the controller's inputs, if they represent the die
    bool dieHasMoved_ = false;         ///< since the last search
    bool hasBattery_ = false;
};

}  // namespace kestro
