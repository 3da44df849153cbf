#include "platform/linux/sensors/hwmon_fans.h"

#include "core/base/text.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace kestro {
namespace {

constexpr std::size_t fanLimit = 32;

// Controllers report 65535 for a fan that they cannot measure.
constexpr std::int64_t largestSpeed = 50'000;

std::optional<double> parseSpeed(std::string_view text) {
    const auto speed = parseTrimmed<std::int64_t>(text);
    const bool isPlausible = speed && *speed >= 0 && *speed <= largestSpeed;
    return isPlausible ? std::optional(static_cast<double>(*speed)) : std::nullopt;
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
    for (auto& fan : fans_) {
        readLimits(fan);
    }
    listFans();
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
        // The second is that of applesmc.
        for (const char* const target : {"_target", "_output"}) {
            if (!fan.target && isReadable(path + target)) {
                fan.target.emplace(path + target, stayGone);
            }
        }
        fan.gate = SleepGate(chip);
        fan.minimum.path = path + "_min";
        fan.maximum.path = path + "_max";
        fan.isKnownToBeThere = chip.kind != ChipKind::mainboard || label || haveTurned_.contains(fan.identity);
        fan.isRepeated = chip.kind == ChipKind::repeating;
        fans_.push_back(std::move(fan));
    }
}

void HwmonFans::readLimits(Fan& fan) {
    for (auto* limit : {&fan.minimum, &fan.maximum}) {
        if (limit->value || limit->path.empty() || fan.gate.isAsleep(buffer_)) {
            continue;
        }
        PersistentFile file(limit->path);
        if (const auto text = file.read(buffer_)) {
            limit->value = parseSpeed(*text);
        }
        if (limit->value || file.isGone()) {
            limit->path.clear();
        }
    }
}

void HwmonFans::listFans() {
    listed_.clear();
    bool hasOwn = false;
    for (std::size_t index = 0; index < fans_.size(); ++index) {
        auto& fan = fans_[index];
        // Chips that duplicate others come last, and count only if no other chip reports a fan.
        if (fan.isRepeated && hasOwn) {
            break;
        }
        if (!fan.isKnownToBeThere && read(fan.input).value_or(0) > 0) {
            fan.isKnownToBeThere = true;
            haveTurned_.insert(fan.identity);
        }
        if (fan.isKnownToBeThere) {
            listed_.push_back(index);
            hasOwn = hasOwn || (!fan.isRepeated && !fan.gate.canSleep());
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
    const auto target = !source.target || source.gate.isAsleep(buffer_) ? std::nullopt : read(*source.target);
    // Some chips report the limit of a register.
    const bool isBeyondLimit = target && source.maximum.value && *target > *source.maximum.value;
    return isBeyondLimit ? std::nullopt : target;
}

}  // namespace kestro
