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

}  // namespace

TemperatureSensors::TemperatureSensors(std::string root)
    : root_(std::move(root)), buffer_(4096), schedule_(pathUnder(root_, "/sys/class/hwmon")) {}

void TemperatureSensors::refresh(MonotonicTime now) {
    const auto due = schedule_.due(now);
    if (due == SearchSchedule::Due::search || (due == SearchSchedule::Due::check && isAnyRepaired())) {
        search();
    }
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

void TemperatureSensors::search() {
    sensors_.clear();
    faults_.clear();
    const auto chips = listHwmonChips(root_);
    std::vector<std::string> supplies;
    for (const auto& name : listDirectory(pathUnder(root_, "/sys/class/power_supply"))) {
        supplies.push_back(asChipName(name));
    }
    for (const auto& chip : chips) {
        // A supply's chip only repeats the supply's own values, even those of a wireless mouse.
        if (std::ranges::find(supplies, chip.name) == supplies.end()) {
            addChip(chip);
        }
    }
    addBatteries();
    settleNames(chips);
    std::ranges::stable_sort(sensors_, {}, &Sensor::place);
    if (sensors_.size() > sensorLimit) {
        sensors_.resize(sensorLimit);
    }
}

void TemperatureSensors::addChip(const HwmonChip& chip) {
    const auto numbers = listInputs(chip, "temp");
    std::vector<std::optional<std::string>> labels;
    for (const auto number : numbers) {
        labels.push_back(readLabel(chip, number));
    }
    // On processors that have both, Tctl is Tdie plus an offset for fan control.
    const bool hasDie = std::ranges::find(labels, "Tdie") != labels.end();
    for (std::size_t index = 0; index < numbers.size(); ++index) {
        const auto& label = labels[index];
        if ((hasDie && label == "Tctl") || isUnconnected(chip, numbers[index], label)) {
            continue;
        }
        Sensor sensor;
        sensor.name = sensorName(chip, numbers[index], label);
        const bool isDie =
            chip.kind == ChipKind::processor || (chip.kind == ChipKind::controller && isDieName(sensor.name));
        sensor.place = isDie ? Place::die : chip.kind == ChipKind::firmware ? Place::firmware : Place::elsewhere;
        sensor.file =
            PersistentFile(chip.directory + "/temp" + std::to_string(numbers[index]) + "_input", stayGone);
        sensor.gate = SleepGate(chip);
        sensor.isSlow = chip.kind == ChipKind::drive;
        sensors_.push_back(std::move(sensor));
    }
}

void TemperatureSensors::addBatteries() {
    const auto parent = pathUnder(root_, "/sys/class/power_supply");
    for (const auto& name : listDirectory(parent)) {
        const auto directory = parent + "/" + name;
        const auto shown = displayText(name);
        if (!shown || !holds(directory + "/type", "Battery") || holds(directory + "/scope", "Device") ||
            !isReadable(directory + "/temp")) {
            continue;
        }
        Sensor sensor;
        sensor.name = "Battery " + *shown;
        sensor.place = Place::battery;
        sensor.file = PersistentFile(directory + "/temp", stayGone);
        sensor.unitsPerDegree = 10;
        sensors_.push_back(std::move(sensor));
    }
}

void TemperatureSensors::addZones(const std::vector<HwmonChip>& chips) {
    for (auto& zone : readThermalZones(root_)) {
        const bool isListed = std::ranges::find(chips, asChipName(zone.type), &HwmonChip::name) != chips.end();
        // coretemp already covers the package zone, and that family's policy device measures nothing.
        if (isListed || zone.type.starts_with("INT3400")) {
            continue;
        }
        Sensor sensor;
        sensor.name = zoneName(zone.type);
        sensor.place = chipKind(zone.type) == ChipKind::firmware ? Place::firmware
                       : isDieName(sensor.name)                  ? Place::die
                                                                 : Place::elsewhere;
        sensor.file = PersistentFile(std::move(zone.temperaturePath), stayGone);
        sensors_.push_back(std::move(sensor));
    }
}

void TemperatureSensors::settleNames(const std::vector<HwmonChip>& chips) {
    const auto isDie = [](const Sensor& sensor) { return sensor.place == Place::die || isDieName(sensor.name); };
    if (std::ranges::find(sensors_, Place::die, &Sensor::place) != sensors_.end()) {
        for (auto& sensor : sensors_) {
            if (sensor.place == Place::elsewhere || sensor.place == Place::firmware) {
                sensor.name = nameOutsideDie(sensor.name);
            }
        }
        return;
    }
    if (std::ranges::none_of(sensors_, isDie)) {
        addZones(chips);
    }
    if (std::ranges::none_of(sensors_, isDie)) {
        for (auto& sensor : sensors_) {
            if (sensor.place == Place::firmware) {
                sensor.name = "CPU " + sensor.name;
            }
        }
    }
}

std::optional<double> TemperatureSensors::read(Sensor& sensor) {
    if (sensor.gate.isAsleep(buffer_)) {
        return std::nullopt;
    }
    const auto text = sensor.file.read(buffer_);
    if (!text && sensor.file.isGone()) {
        schedule_.noteGone();
    }
    const auto units = text ? parseMillidegrees(*text) : std::nullopt;
    return units ? std::optional(*units / sensor.unitsPerDegree) : std::nullopt;
}

std::optional<double> TemperatureSensors::temperature(std::size_t index, MonotonicTime now) {
    auto& sensor = sensors_[index];
    if (!sensor.isSlow) {
        return read(sensor);
    }
    if (!sensor.readAt || now - *sensor.readAt >= slowPeriod) {
        sensor.readAt = now;
        sensor.last = read(sensor);
    }
    return sensor.last;
}

}  // namespace kestro
