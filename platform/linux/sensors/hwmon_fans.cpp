#include "platform/linux/sensors/hwmon_fans.h"

#include "core/base/text.h"

#include <algorithm>
#include <chrono>
#include <string_view>
#include <utility>

namespace kestro {
namespace {

constexpr std::size_t fanLimit = 32;

// How long the last reading of a device that must not be read yet is shown.
constexpr std::chrono::seconds longestUse{60};

constexpr auto stayGone = PersistentFile::WhenGone::stayGone;

// Controllers report 65535 for a fan that they cannot measure.
constexpr std::int64_t largestSpeed = 50'000;

// What readers assume for a fan that does not state its maximum.
constexpr double usualMaximum = 7800;

std::optional<double> parseSpeed(std::string_view text) {
    const auto speed = parseTrimmed<std::int64_t>(text);
    const bool isPlausible = speed && *speed >= 0 && *speed <= largestSpeed;
    return isPlausible ? std::optional(static_cast<double>(*speed)) : std::nullopt;
}

}  // namespace

HwmonFans::HwmonFans(std::string root, std::shared_ptr<SleepingDevices> devices)
    : root_(std::move(root)),
      devices_(std::move(devices)),
      buffer_(4096),
      schedule_(pathUnder(root_, "/sys/class/hwmon")) {}

void HwmonFans::refresh(MonotonicTime now) {
    const auto due = schedule_.due(now);
    if (due == SearchSchedule::Due::nothing) {
        return;
    }
    if (due == SearchSchedule::Due::search) {
        search();
    }
    for (auto& fan : fans_) {
        readLimits(fan, now);
    }
    listFans(now);
}

void HwmonFans::search() {
    fans_.clear();
    auto chips = listHwmonChips(root_);
    std::ranges::stable_sort(chips, {}, [](const HwmonChip& chip) { return chip.kind == ChipKind::repeating; });
    for (const auto& chip : chips) {
        addFans(chip);
    }
}

void HwmonFans::addFans(const HwmonChip& chip) {
    const auto numbers = listInputs(chip, "fan");
    const auto device = numbers.empty() ? nullptr : devices_->find(chip);
    for (const auto number : numbers) {
        if (fans_.size() == fanLimit) {
            return;
        }
        const auto attribute = "fan" + std::to_string(number);
        const auto path = chip.directory + "/" + attribute;
        const auto labelText = readFile(path + "_label");
        const auto label = labelText ? displayText(*labelText) : std::nullopt;
        Fan fan;
        fan.identity = chip.device + "|" + chip.name + "|" + label.value_or(attribute);
        fan.label = label.value_or("");
        fan.input.file = PersistentFile(path + "_input", stayGone);
        // The second is that of applesmc.
        for (const char* const target : {"_target", "_output"}) {
            if (!fan.target && isReadable(path + target)) {
                fan.target.emplace(Reading{PersistentFile(path + target, stayGone), std::nullopt});
            }
        }
        fan.device = device;
        fan.minimum.file.emplace(path + "_min");
        fan.maximum.file.emplace(path + "_max");
        fan.isKnownToBeThere = chip.kind != ChipKind::mainboard || label || haveTurned_.contains(fan.identity);
        fan.isOnMainboard = chip.kind == ChipKind::mainboard;
        fan.isGraphics = chip.kind == ChipKind::graphics;
        fan.isRepeated = chip.kind == ChipKind::repeating;
        fans_.push_back(std::move(fan));
    }
}

SleepingDevice::Access HwmonFans::access(const Fan& fan, MonotonicTime now) {
    return fan.device ? fan.device->access(now) : SleepingDevice::Access::read;
}

void HwmonFans::readLimits(Fan& fan, MonotonicTime now) {
    for (auto* limit : {&fan.minimum, &fan.maximum}) {
        if (!limit->file || access(fan, now) != SleepingDevice::Access::read) {
            continue;
        }
        if (const auto text = limit->file->read(buffer_)) {
            limit->value = parseSpeed(*text);
        }
        if (limit->value || limit->file->isGone()) {
            limit->file.reset();
        }
    }
    if (fan.maximum.value == 0) {
        fan.maximum.value.reset();  // not set
    }
}

void HwmonFans::listFans(MonotonicTime now) {
    listed_.clear();
    bool hasOwn = false;
    for (std::size_t index = 0; index < fans_.size(); ++index) {
        auto& fan = fans_[index];
        // Chips that duplicate others come last, and count only if no other chip reports a fan.
        if (fan.isRepeated && hasOwn) {
            break;
        }
        if (!fan.isKnownToBeThere && read(fan, fan.input, 0, now).value_or(0) > 0) {
            fan.isKnownToBeThere = true;
            haveTurned_.insert(fan.identity);
        }
        if (fan.isKnownToBeThere) {
            listed_.push_back(index);
            hasOwn = hasOwn || (!fan.isRepeated && !fan.isGraphics);
        }
    }
}

std::optional<double> HwmonFans::read(const Fan& fan, Reading& reading, std::optional<double> whileAsleep,
                                      MonotonicTime now) {
    switch (access(fan, now)) {
        case SleepingDevice::Access::asleep:
            return whileAsleep;
        case SleepingDevice::Access::wait:
            return reading.readAt && now - *reading.readAt < longestUse ? reading.last : std::nullopt;
        case SleepingDevice::Access::read:
            break;
    }
    reading.readAt = now;
    const auto text = reading.file.read(buffer_);
    if (!text && reading.file.isGone()) {
        schedule_.noteGone();
    }
    reading.last = text ? parseSpeed(*text) : std::nullopt;
    return reading.last;
}

std::optional<double> HwmonFans::speed(std::size_t fan, MonotonicTime now) {
    auto& source = fans_[listed_[fan]];
    return read(source, source.input, 0, now);
}

std::optional<double> HwmonFans::target(std::size_t fan, MonotonicTime now) {
    auto& source = fans_[listed_[fan]];
    const auto target = source.target ? read(source, *source.target, std::nullopt, now) : std::nullopt;
    // While they do not regulate the fan's speed, mainboard chips report 0 or the limit of a register.
    const double maximum = source.maximum.value.value_or(std::max(usualMaximum, source.input.last.value_or(0)));
    const bool isUnset = target && (*target > maximum || (*target == 0 && source.isOnMainboard));
    return isUnset ? std::nullopt : target;
}

}  // namespace kestro
