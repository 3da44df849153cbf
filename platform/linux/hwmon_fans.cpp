#include "platform/linux/hwmon_fans.h"

#include "platform/linux/text_parsing.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace kestro {
namespace {

constexpr std::size_t fanLimit = 32;

// Controllers answer 65535 for a fan that they cannot measure.
constexpr std::int64_t largestSpeed = 50'000;

std::optional<double> parseSpeed(std::string_view text) {
    const auto speed = parseInteger<std::int64_t>(text);
    const bool isPlausible = speed && *speed >= 0 && *speed <= largestSpeed;
    return isPlausible ? std::optional(static_cast<double>(*speed)) : std::nullopt;
}

std::optional<double> readSpeed(const std::string& path) {
    const auto text = readFile(path);
    return text ? parseSpeed(*text) : std::nullopt;
}

}  // namespace

HwmonFans::HwmonFans(std::string root)
    : root_(std::move(root)), buffer_(4096), schedule_(pathUnder(root_, "/sys/class/hwmon")) {}

void HwmonFans::refresh(MonotonicTime now) {
    const auto due = schedule_.due(now);
    if (due == SearchSchedule::Due::nothing) {
        return;
    }
    if (due == SearchSchedule::Due::search) {
        search();
    }
    listFans();
}

void HwmonFans::search() {
    fans_.clear();
    const auto chips = listHwmonChips(root_);
    for (const auto& chip : chips) {
        if (chip.kind != ChipKind::repeating) {
            addFans(chip);
        }
    }
    const bool isMachinesOwn = std::ranges::any_of(fans_, [](const Fan& fan) { return !fan.gate.canSleep(); });
    for (const auto& chip : chips) {
        if (chip.kind == ChipKind::repeating && !isMachinesOwn) {
            addFans(chip);
        }
    }
}

void HwmonFans::addFans(const HwmonChip& chip) {
    constexpr auto stayGone = PersistentFile::WhenGone::stayGone;
    for (const auto number : listInputs(chip, "fan")) {
        if (fans_.size() == fanLimit) {
            return;
        }
        const auto attribute = "fan" + std::to_string(number);
        const auto path = chip.directory + "/" + attribute;
        const auto labelText = readFile(path + "_label");
        const auto label = labelText ? displayText(*labelText) : std::nullopt;
        Fan fan;
        fan.identity = chip.device + "|" + chip.name + "|" + label.value_or(attribute);
        fan.input = PersistentFile(path + "_input", stayGone);
        if (isReadable(path + "_target")) {
            fan.target.emplace(path + "_target", stayGone);
        }
        fan.gate = SleepGate(chip);
        if (!fan.gate.isAsleep(buffer_)) {
            fan.minimum = readSpeed(path + "_min");
            fan.maximum = readSpeed(path + "_max");
        }
        fan.isListed = chip.kind != ChipKind::mainboard || label || haveTurned_.contains(fan.identity);
        fans_.push_back(std::move(fan));
    }
}

void HwmonFans::listFans() {
    listed_.clear();
    for (std::size_t index = 0; index < fans_.size(); ++index) {
        auto& fan = fans_[index];
        if (!fan.isListed && read(fan.input).value_or(0) > 0) {
            fan.isListed = true;
            haveTurned_.insert(fan.identity);
        }
        if (fan.isListed) {
            listed_.push_back(index);
        }
    }
}

std::optional<double> HwmonFans::read(PersistentFile& file) {
    const auto text = file.read(buffer_);
    if (!text && file.isGone()) {
        schedule_.noteGone();
    }
    return text ? parseSpeed(*text) : std::nullopt;
}

std::optional<double> HwmonFans::speed(std::size_t fan) {
    auto& source = fans_[listed_[fan]];
    return source.gate.isAsleep(buffer_) ? 0 : read(source.input);
}

std::optional<double> HwmonFans::target(std::size_t fan) {
    auto& source = fans_[listed_[fan]];
    return !source.target || source.gate.isAsleep(buffer_) ? std::nullopt : read(*source.target);
}

}  // namespace kestro
