#include "platform/linux/battery/linux_power_sources.h"

#include "core/base/text.h"

#include <array>
#include <string_view>
#include <utility>

namespace kestro {
namespace {

constexpr std::size_t sourceLimit = 32;

/// Read in place of "uevent" for drivers where one failing property makes all of "uevent" fail.
constexpr std::array<std::string_view, 17> attributes{"status",
                                                      "present",
                                                      "online",
                                                      "capacity",
                                                      "charge_now",
                                                      "charge_full",
                                                      "charge_full_design",
                                                      "energy_now",
                                                      "energy_full",
                                                      "energy_full_design",
                                                      "current_now",
                                                      "power_now",
                                                      "voltage_now",
                                                      "voltage_min_design",
                                                      "time_to_empty_now",
                                                      "time_to_empty_avg",
                                                      "health"};

std::string readAttributes(const std::string& directory) {
    std::string text;
    for (const auto attribute : attributes) {
        const auto value = readFile(directory + "/" + std::string(attribute), 4096);
        if (!value) {
            continue;
        }
        text += "POWER_SUPPLY_";
        for (const char character : attribute) {
            text += character >= 'a' && character <= 'z' ? static_cast<char>(character - 'a' + 'A') : character;
        }
        text.append("=").append(trimmed(*value)).append("\n");
    }
    return text;
}

}  // namespace

LinuxPowerSources::LinuxPowerSources(const Clock& clock, std::string root)
    : clock_(clock),
      directory_(pathUnder(root, "/sys/class/power_supply")),
      buffer_(16384),
      schedule_(directory_) {}

void LinuxPowerSources::search() {
    sources_.clear();
    for (const auto& name : listDirectory(directory_)) {
        const auto directory = directory_ + "/" + name;
        const auto type = readFile(directory + "/type", 4096);
        if (!type || sources_.size() == sourceLimit) {
            continue;
        }
        const auto scope = readFile(directory + "/scope", 4096);
        Source source;
        source.kind = parseSupplyKind(*type);
        source.properties = PersistentFile(directory + "/uevent", PersistentFile::WhenGone::stayGone);
        source.directory = directory;
        if (!scope || trimmed(*scope) != "Device") {
            sources_.push_back(std::move(source));
        }
    }
}

PowerSupply LinuxPowerSources::read(Source& source) {
    const auto text = source.properties.read(buffer_);
    if (!text && source.properties.isGone()) {
        schedule_.noteGone();
    }
    std::string attributesText;
    if (!text) {
        attributesText = readAttributes(source.directory);
    }
    auto supply = parsePowerSupply(text.value_or(attributesText));
    // Kernels before 5.8 omit the type from the properties.
    supply.kind = source.kind;
    supply.isPresent = supply.isPresent && (text || !attributesText.empty());
    return supply;
}

std::optional<std::vector<std::optional<PowerSourceDescription>>> LinuxPowerSources::copyDescriptions() {
    const auto due = schedule_.due(clock_.monotonicNow());
    if (due == SearchSchedule::Due::search) {
        search();
    }
    if (due != SearchSchedule::Due::nothing) {
        isSupported_ = isDirectory(directory_);
    }
    if (!isSupported_) {
        return std::nullopt;
    }
    supplies_.clear();
    for (auto& source : sources_) {
        supplies_.push_back(read(source));
    }
    std::vector<std::optional<PowerSourceDescription>> descriptions;
    if (auto description = describeBatteries(supplies_)) {
        descriptions.emplace_back(std::move(description));
    }
    return descriptions;
}

}  // namespace kestro
