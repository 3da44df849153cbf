#include "platform/linux/sensors/temperature_sensors.h"

#include "core/base/text.h"
#include "platform/linux/sensors/sensor_names.h"
#include "platform/linux/sensors/thermal_zones.h"

#include <algorithm>
#include <chrono>
#include <string_view>
#include <utility>

namespace kestro {
namespace {

constexpr std::size_t sensorLimit = 256;
constexpr std::chrono::seconds slowPeriod{10};

// How long the last reading of a device that must not be read yet is shown.
constexpr std::chrono::seconds longestUse{60};

// Apart from processors and graphics, no machine gets this hot; open inputs often read as much or more.
constexpr double hottestBoard = 100;

// Beyond the range that the thermal reader accepts.
constexpr double hottestDie = 125;

constexpr double noticeableMove = 5;
constexpr auto stayGone = PersistentFile::WhenGone::stayGone;

/// The name under which the kernel registers a power supply's or thermal zone's chip.
std::string asChipName(std::string_view name) {
    std::string result(name);
    std::ranges::replace(result, '-', '_');
    return result;
}

std::optional<std::string> readLabel(const HwmonChip& chip, std::uint32_t number) {
    const auto text = readFile(chip.directory + "/temp" + std::to_string(number) + "_label");
    return text ? displayText(*text) : std::nullopt;
}

bool holds(const std::string& path, std::string_view value) {
    const auto text = readFile(path);
    return text && trimmed(*text) == value;
}

/// Whether the kernel registered the chip for a thermal zone, under the zone's name.
bool isZoneChip(const HwmonChip& chip, const std::vector<ThermalZone>& zones) {
    return chip.kind == ChipKind::other &&
           (chip.name.ends_with("_thermal") || std::ranges::any_of(zones, [&chip](const ThermalZone& zone) {
                return asChipName(zone.type) == chip.name;
            }));
}

}  // namespace

TemperatureSensors::TemperatureSensors(std::string root, std::shared_ptr<SleepingDevices> devices)
    : root_(std::move(root)),
      devices_(std::move(devices)),
      buffer_(4096),
      schedule_(pathUnder(root_, "/sys/class/hwmon")) {}

void TemperatureSensors::refresh(MonotonicTime now) {
    const auto due = schedule_.due(now);
    if (due == SearchSchedule::Due::search || (due == SearchSchedule::Due::check && isAnyRepaired())) {
        search(now);
    } else if (due == SearchSchedule::Due::check) {
        chooseDie(now);
    }
    if (dieRank_ == DieRank::controller) {
        chooseHottest(now);
    }
}

const std::string& TemperatureSensors::name(std::size_t index) const {
    const auto& sensor = sensors_[index];
    return isDie(sensor) ? sensor.dieName : sensor.name;
}

bool TemperatureSensors::isDie(const Sensor& sensor) const {
    if (dieRank_ == DieRank::controller) {
        return &sensor == hottest_;
    }
    return dieRank_ != DieRank::none && sensor.rank == dieRank_ && sensor.isTrusted;
}

TemperatureSensors::Place TemperatureSensors::place(const Sensor& sensor) const {
    if (isDie(sensor)) {
        return Place::die;
    }
    if (sensor.isBattery) {
        return Place::battery;
    }
    return sensor.rank == DieRank::firmwareZone ? Place::firmware : Place::elsewhere;
}

bool TemperatureSensors::isAnyRepaired() const {
    return std::ranges::any_of(faults_, [](const std::string& path) { return holds(path, "0"); });
}

/// Whether input `number` measures nothing: it reports a fault, or is commonly unconnected on mainboards.
bool TemperatureSensors::isUnconnected(const HwmonChip& chip, std::uint32_t number,
                                       const std::optional<std::string>& label) {
    const auto prefix = chip.directory + "/temp" + std::to_string(number);
    if (holds(prefix + "_fault", "1")) {
        faults_.push_back(prefix + "_fault");
        return true;
    }
    return chip.kind == ChipKind::mainboard &&
           (holds(prefix + "_type", "0") || (label && isFloatingInput(*label)));
}

void TemperatureSensors::search(MonotonicTime now) {
    sensors_.clear();
    faults_.clear();
    hottest_ = nullptr;
    dieHasMoved_ = false;
    addBatteries();
    auto zones = readThermalZones(root_);
    const auto chips = listHwmonChips(root_);
    std::vector<std::string> supplies;
    for (const auto& name : listDirectory(pathUnder(root_, "/sys/class/power_supply"))) {
        supplies.push_back(asChipName(name));
    }
    for (const auto& chip : chips) {
        // A supply's chip only repeats the supply's own values, even those of a wireless mouse.
        if (std::ranges::find(supplies, chip.name) == supplies.end()) {
            addChip(chip, isZoneChip(chip, zones));
        }
    }
    probeDie(0, now);
    chooseDie(now);
    if (dieRank_ != DieRank::processorChip) {
        const auto first = sensors_.size();
        addZones(chips, std::move(zones));
        probeDie(first, now);
        chooseDie(now);
    }
    std::ranges::stable_sort(sensors_, {}, [this](const Sensor& sensor) { return place(sensor); });
    if (sensors_.size() > sensorLimit) {
        sensors_.resize(sensorLimit);
    }
}

void TemperatureSensors::nameSensor(Sensor& sensor, std::string name) {
    sensor.dieName = isDieName(name) ? name : "CPU " + name;
    sensor.name = nameOutsideDie(name);
}

void TemperatureSensors::addChip(const HwmonChip& chip, bool isZone) {
    const auto numbers = listInputs(chip, "temp");
    std::vector<std::optional<std::string>> labels;
    for (const auto number : numbers) {
        labels.push_back(readLabel(chip, number));
    }
    const auto device = numbers.empty() ? nullptr : devices_->find(chip);
    // On processors that have both, Tctl is Tdie plus an offset for fan control.
    const bool hasDie = std::ranges::find(labels, "Tdie") != labels.end();
    for (std::size_t index = 0; index < numbers.size(); ++index) {
        const auto& label = labels[index];
        if ((hasDie && label == "Tctl") || isUnconnected(chip, numbers[index], label)) {
            continue;
        }
        Sensor sensor;
        if (hasBattery_ && chip.kind == ChipKind::controller && isAppleBatteryKey(label.value_or(""))) {
            sensor.isBattery = true;
            sensor.name = "Battery " + *label;
        } else {
            nameSensor(sensor, sensorName(chip, numbers[index], label));
            sensor.rank = isZone ? zoneDieRank(chip.name) : inputDieRank(chip, label);
        }
        const bool isOfBoard = chip.kind == ChipKind::mainboard || chip.kind == ChipKind::embedded ||
                               chip.kind == ChipKind::firmware || (isZone && sensor.rank == DieRank::none);
        sensor.mayBeUnconnected = isOfBoard && !isGraphicsName(label.value_or(chip.name));
        sensor.isSlow = chip.kind == ChipKind::drive;
        sensor.file =
            PersistentFile(chip.directory + "/temp" + std::to_string(numbers[index]) + "_input", stayGone);
        sensor.device = device;
        sensors_.push_back(std::move(sensor));
    }
}

void TemperatureSensors::addBatteries() {
    const auto parent = pathUnder(root_, "/sys/class/power_supply");
    hasBattery_ = false;
    for (const auto& name : listDirectory(parent)) {
        const auto directory = parent + "/" + name;
        const auto shown = displayText(name);
        if (!shown || !holds(directory + "/type", "Battery") || holds(directory + "/scope", "Device")) {
            continue;
        }
        hasBattery_ = true;
        if (!isReadable(directory + "/temp")) {
            continue;
        }
        Sensor sensor;
        sensor.name = "Battery " + *shown;
        sensor.isBattery = true;
        sensor.file = PersistentFile(directory + "/temp", stayGone);
        sensor.unitsPerDegree = 10;
        sensors_.push_back(std::move(sensor));
    }
}

void TemperatureSensors::addZones(const std::vector<HwmonChip>& chips, std::vector<ThermalZone> zones) {
    for (auto& zone : zones) {
        const bool isListed = std::ranges::find(chips, asChipName(zone.type), &HwmonChip::name) != chips.end();
        // That family's policy device measures nothing.
        if (isListed || zone.type.starts_with("INT3400")) {
            continue;
        }
        Sensor sensor;
        nameSensor(sensor, zoneName(zone.type));
        sensor.rank = zoneDieRank(zone.type);
        sensor.mayBeUnconnected =
            sensor.rank == DieRank::firmwareZone || (sensor.rank == DieRank::none && !isGraphicsName(zone.type));
        sensor.file = PersistentFile(std::move(zone.temperaturePath), stayGone);
        sensors_.push_back(std::move(sensor));
    }
}

/// Reads the sensors from position `from` on that may measure the die, to find out which of them do.
void TemperatureSensors::probeDie(std::size_t from, MonotonicTime now) {
    for (std::size_t index = from; index < sensors_.size(); ++index) {
        if (sensors_[index].rank != DieRank::none) {
            take(sensors_[index], now);
        }
    }
}

void TemperatureSensors::chooseDie(MonotonicTime now) {
    dieRank_ = DieRank::none;
    for (auto& sensor : sensors_) {
        sensor.isTrusted = sensor.rank != DieRank::firmwareZone || !sensor.history.seemsConstant(now);
        if (sensor.isTrusted && sensor.history.isMeasuring()) {
            dieRank_ = std::min(dieRank_, sensor.rank);
        }
    }
    if (dieRank_ != DieRank::controller) {
        hottest_ = nullptr;
    }
}

void TemperatureSensors::chooseHottest(MonotonicTime now) {
    hottest_ = nullptr;
    double highest = 0;
    for (auto& sensor : sensors_) {
        if (sensor.rank != DieRank::controller) {
            continue;
        }
        const auto value = take(sensor, now);
        sensor.readAhead = value;
        const bool isPlausible =
            value && !(sensor.mayBeUnconnected && *value >= hottestBoard) && *value < hottestDie;
        if (isPlausible && *value > highest) {
            highest = *value;
            hottest_ = &sensor;
        }
    }
}

/// Whether an input of the board probably measures nothing: too hot, or constant while the die was not.
bool TemperatureSensors::seemsUnconnected(const Sensor& sensor, double value) const {
    const bool hasOtherDie = dieRank_ != DieRank::none && !isDie(sensor);
    return sensor.mayBeUnconnected && hasOtherDie &&
           (value >= hottestBoard || (dieHasMoved_ && !sensor.history.hasChanged()));
}

std::optional<double> TemperatureSensors::read(Sensor& sensor) {
    const auto text = sensor.file.read(buffer_);
    if (!text && sensor.file.isGone()) {
        schedule_.noteGone();
    }
    const auto units = text ? parseMillidegrees(*text) : std::nullopt;
    return units ? std::optional(*units / sensor.unitsPerDegree) : std::nullopt;
}

/// Reads the sensor, or returns its last reading while it must not be read.
std::optional<double> TemperatureSensors::take(Sensor& sensor, MonotonicTime now) {
    if (sensor.isSlow && sensor.readAt && now - *sensor.readAt < slowPeriod) {
        return sensor.last;
    }
    const auto access = sensor.device ? sensor.device->access(now) : SleepingDevice::Access::read;
    if (access == SleepingDevice::Access::asleep) {
        return std::nullopt;
    }
    if (access == SleepingDevice::Access::wait) {
        return sensor.readAt && now - *sensor.readAt < longestUse ? sensor.last : std::nullopt;
    }
    sensor.readAt = now;
    sensor.last = read(sensor);
    if (sensor.last) {
        sensor.history.note(*sensor.last, now);
    }
    return sensor.last;
}

std::optional<double> TemperatureSensors::temperature(std::size_t index, MonotonicTime now) {
    auto& sensor = sensors_[index];
    const auto value = sensor.readAhead ? *sensor.readAhead : take(sensor, now);
    sensor.readAhead.reset();
    dieHasMoved_ = dieHasMoved_ || (isDie(sensor) && sensor.history.span() >= noticeableMove);
    return value && seemsUnconnected(sensor, *value) ? std::nullopt : value;
}

}  // namespace kestro
