#include "tests/platform/linux/sensors/machine_layout.h"

#include "core/base/text.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <fstream>
#include <string_view>

namespace kestro::test {
namespace {

double number(std::string_view text) {
    const auto value = parseTrimmed<double>(text);
    EXPECT_TRUE(value) << "not a number: " << text;
    return value.value_or(0);
}

MachineLayout::Fan parseFan(std::string_view rest) {
    MachineLayout::Fan fan;
    fan.speed = takeField(rest);
    for (auto word = takeField(rest); !word.empty(); word = takeField(rest)) {
        if (word == "label") {
            fan.label = trimmed(rest);
            break;
        }
        fan.limits.emplace_back(word, takeField(rest));
    }
    return fan;
}

std::optional<MachineLayout::Die> parseDie(std::string_view rest) {
    const auto average = takeField(rest);
    if (average == "none") {
        return std::nullopt;
    }
    const auto count = takeField(rest);
    return MachineLayout::Die{number(average), static_cast<std::size_t>(number(count.substr(1))),
                              std::string(trimmed(rest))};
}

std::vector<MachineLayout::Speed> parseSpeeds(std::string_view rest) {
    std::vector<MachineLayout::Speed> speeds;
    for (auto word = takeField(rest); !word.empty(); word = takeField(rest)) {
        const auto slash = word.find('/');
        const auto speed = number(word.substr(0, slash));
        speeds.push_back({speed, slash == word.npos ? speed : number(word.substr(slash + 1))});
    }
    return speeds;
}

void parseLine(MachineLayout& machine, std::string_view key, std::string_view rest) {
    if (key == "source") {
        machine.source = trimmed(rest);
    } else if (key == "chip" || key == "old") {
        machine.chips.push_back({std::string(trimmed(rest)), key == "old", {}, {}});
    } else if (key == "temp") {
        const auto celsius = number(takeField(rest));
        machine.chips.at(machine.chips.size() - 1).temperatures.push_back({celsius, std::string(trimmed(rest))});
    } else if (key == "fan") {
        machine.chips.at(machine.chips.size() - 1).fans.push_back(parseFan(rest));
    } else if (key == "zone") {
        const std::string type(takeField(rest));
        const auto celsius = number(takeField(rest));
        machine.zones.push_back({type, celsius, trimmed(rest) == "hwmon"});
    } else if (key == "battery") {
        const std::string name(takeField(rest));
        const auto celsius = trimmed(rest);
        machine.batteries.push_back({name, celsius.empty() ? std::nullopt : std::optional(number(celsius))});
    } else if (key == "cores") {
        machine.cores = trimmed(rest);
    } else if (key == "die") {
        machine.die = parseDie(rest);
    } else if (key == "peak") {
        machine.peak = trimmed(rest) == "none" ? std::nullopt : std::optional(number(rest));
    } else if (key == "fans") {
        machine.fans = parseSpeeds(rest);
    } else if (key == "clusters") {
        machine.clusters = trimmed(rest);
    } else {
        ADD_FAILURE() << machine.name << ": unknown line: " << key;
    }
}

std::string millidegrees(double celsius) {
    return std::to_string(std::lround(celsius * 1000)) + "\n";
}

/// Writes the class device of a chip and its attributes.
class ChipWriter {
public:
    ChipWriter(TemporaryTree& tree, std::size_t index, const std::string& device, bool registersTheOldWay)
        : tree_(tree) {
        const auto node = fmt::format("{}/hwmon/hwmon{}", device, index);
        attributes_ = registersTheOldWay ? device : node;
        tree.write(node + "/uevent", "")
            .link(node + "/device", device)
            .link(fmt::format("/sys/class/hwmon/hwmon{}", index), node)
            .write(device + "/power/control", "auto\n")
            .write(device + "/power/runtime_status", "unsupported\n");
    }

    void write(std::string_view attribute, std::string_view value) {
        tree_.write(fmt::format("{}/{}", attributes_, attribute), value);
    }

private:
    TemporaryTree& tree_;
    std::string attributes_;
};

void writeChip(TemporaryTree& tree, std::size_t index, const MachineLayout::Chip& chip) {
    const auto device = fmt::format("/sys/devices/platform/{:02}-{}", index, chip.name);
    ChipWriter writer(tree, index, device, chip.registersTheOldWay);
    writer.write("name", chip.name + "\n");
    for (std::size_t i = 0; i < chip.temperatures.size(); ++i) {
        writer.write(fmt::format("temp{}_input", i + 1), millidegrees(chip.temperatures[i].celsius));
        if (!chip.temperatures[i].label.empty()) {
            writer.write(fmt::format("temp{}_label", i + 1), chip.temperatures[i].label + "\n");
        }
    }
    for (std::size_t i = 0; i < chip.fans.size(); ++i) {
        writer.write(fmt::format("fan{}_input", i + 1), chip.fans[i].speed + "\n");
        for (const auto& [attribute, value] : chip.fans[i].limits) {
            writer.write(fmt::format("fan{}_{}", i + 1, attribute), value + "\n");
        }
        if (!chip.fans[i].label.empty()) {
            writer.write(fmt::format("fan{}_label", i + 1), chip.fans[i].label + "\n");
        }
    }
}

void writeZone(TemporaryTree& tree, std::size_t index, std::size_t chipIndex, const MachineLayout::Zone& zone) {
    const auto device = fmt::format("/sys/devices/virtual/thermal/thermal_zone{}", index);
    tree.write(device + "/type", zone.type + "\n")
        .write(device + "/temp", millidegrees(zone.celsius))
        .write(device + "/mode", "enabled\n")
        .link(fmt::format("/sys/class/thermal/thermal_zone{}", index), device);
    if (zone.hasChip) {
        ChipWriter writer(tree, chipIndex, device, false);
        auto name = zone.type;
        std::ranges::replace(name, '-', '_');
        writer.write("name", name + "\n");
        writer.write("temp1_input", millidegrees(zone.celsius));
    }
}

/// The capacities of a "cores" line, one per core.
std::vector<int> parseCapacities(std::string_view rest) {
    std::vector<int> capacities;
    for (auto group = takeField(rest); !group.empty(); group = takeField(rest)) {
        const auto times = group.find('x');
        capacities.insert(capacities.end(), static_cast<std::size_t>(number(group.substr(0, times))),
                          static_cast<int>(number(group.substr(times + 1))));
    }
    return capacities;
}

void writeCores(TemporaryTree& tree, std::string_view cores) {
    const auto kind = takeField(cores);
    std::size_t count = 0;
    if (kind == "capacity") {
        const auto capacities = parseCapacities(cores);
        count = capacities.size();
        for (std::size_t cpu = 0; cpu < count; ++cpu) {
            tree.write(fmt::format("/sys/devices/system/cpu/cpu{}/cpu_capacity", cpu),
                       fmt::format("{}\n", capacities[cpu]));
        }
    } else if (kind == "hybrid") {
        const auto performance = static_cast<std::size_t>(number(takeField(cores)));
        count = performance + static_cast<std::size_t>(number(cores));
        tree.write("/sys/devices/cpu_core/cpus", fmt::format("0-{}\n", performance - 1))
            .write("/sys/devices/cpu_atom/cpus", fmt::format("{}-{}\n", performance, count - 1));
    } else {
        count = static_cast<std::size_t>(number(cores));
    }
    for (const char* const list : {"present", "possible", "online"}) {
        tree.write(fmt::format("/sys/devices/system/cpu/{}", list), fmt::format("0-{}\n", count - 1));
    }
    std::string text = "cpu  100 0 100 1000 0 0 0 0 0 0\n";
    for (std::size_t cpu = 0; cpu < count; ++cpu) {
        text += fmt::format("cpu{} 100 0 100 1000 0 0 0 0 0 0\n", cpu);
    }
    tree.write("/proc/stat", text);
}

}  // namespace

std::vector<MachineLayout> readMachineLayouts(const std::string& path) {
    std::vector<MachineLayout> machines;
    std::ifstream file(path);
    for (std::string line; std::getline(file, line);) {
        std::string_view rest(line);
        const auto key = takeField(rest);
        if (key.empty() || key.starts_with("#")) {
            continue;
        }
        if (key == "machine") {
            machines.emplace_back();
            machines.back().name = trimmed(rest);
        } else if (!machines.empty()) {
            parseLine(machines.back(), key, rest);
        }
    }
    return machines;
}

void MachineLayout::writeTo(TemporaryTree& tree) const {
    tree.write("/sys/class/hwmon/.keep", "");
    for (std::size_t index = 0; index < chips.size(); ++index) {
        writeChip(tree, index, chips[index]);
    }
    for (std::size_t index = 0; index < zones.size(); ++index) {
        writeZone(tree, index, chips.size() + index, zones[index]);
    }
    for (const auto& battery : batteries) {
        const auto directory = "/sys/class/power_supply/" + battery.name;
        tree.write(directory + "/type", "Battery\n");
        if (battery.celsius) {
            tree.write(directory + "/temp", fmt::format("{}\n", std::lround(*battery.celsius * 10)));
        }
    }
    if (!cores.empty()) {
        writeCores(tree, cores);
    }
}

}  // namespace kestro::test
