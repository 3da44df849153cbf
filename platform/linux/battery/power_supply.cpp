#include "platform/linux/battery/power_supply.h"

#include "core/base/text.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace kestro {
namespace {

using Amount = std::optional<std::int64_t>;
using Kind = PowerSupply::Kind;
using Status = PowerSupply::Status;

// Far above any battery, but low enough that sums and products of a few values stay exact.
constexpr std::int64_t largestAmount = 10'000'000'000;
constexpr double serviceShare = 0.8;

// Just after the charger is unplugged, gauges report almost no current, at which any battery would last for weeks.
constexpr std::int64_t longestMinutes = 7 * 24 * 60;

constexpr std::array<std::pair<std::string_view, Amount PowerSupply::*>, 13> amounts{{
    {"CAPACITY", &PowerSupply::capacityPercent},
    {"CHARGE_NOW", &PowerSupply::chargeNow},
    {"CHARGE_FULL", &PowerSupply::chargeFull},
    {"CHARGE_FULL_DESIGN", &PowerSupply::chargeFullDesign},
    {"ENERGY_NOW", &PowerSupply::energyNow},
    {"ENERGY_FULL", &PowerSupply::energyFull},
    {"ENERGY_FULL_DESIGN", &PowerSupply::energyFullDesign},
    {"CURRENT_NOW", &PowerSupply::currentNow},
    {"POWER_NOW", &PowerSupply::powerNow},
    {"VOLTAGE_NOW", &PowerSupply::voltageNow},
    {"VOLTAGE_MIN_DESIGN", &PowerSupply::voltageMinDesign},
    {"TIME_TO_EMPTY_NOW", &PowerSupply::timeToEmptySeconds},
    {"TIME_TO_EMPTY_AVG", &PowerSupply::timeToEmptySeconds},
}};

constexpr std::array<std::pair<std::string_view, Status>, 4> statuses{{{"Charging", Status::charging},
                                                                       {"Discharging", Status::discharging},
                                                                       {"Not charging", Status::notCharging},
                                                                       {"Full", Status::full}}};

Amount parseAmount(std::string_view text) {
    const auto value = parseTrimmed<std::int64_t>(text);
    return value && *value > -largestAmount && *value < largestAmount ? Amount(std::abs(*value)) : std::nullopt;
}

void take(PowerSupply& supply, std::string_view key, std::string_view value) {
    const auto* const amount = std::ranges::find(amounts, key, &decltype(amounts)::value_type::first);
    if (amount != amounts.end()) {
        if (const auto parsed = parseAmount(value)) {
            supply.*(amount->second) = parsed;
        }
    } else if (key == "TYPE") {
        supply.kind = parseSupplyKind(value);
    } else if (key == "SCOPE") {
        supply.isDevice = value == "Device";
    } else if (key == "PRESENT") {
        supply.isPresent = value != "0";
    } else if (key == "ONLINE") {
        // 2 means a fixed and 3 a programmable voltage.
        supply.isOnline = parseTrimmed<int>(value).value_or(0) > 0;
    } else if (key == "STATUS") {
        const auto* const status = std::ranges::find(statuses, value, &decltype(statuses)::value_type::first);
        supply.status = status != statuses.end() ? status->second : Status::unknown;
    } else if (key == "HEALTH") {
        supply.health = displayText(value).value_or("");
    }
}

bool isAboveZero(const Amount& amount) {
    return amount && *amount > 0;
}

/// The voltage in mV for converting between a battery's energy and charge.
Amount voltage(const PowerSupply& battery) {
    const auto microvolts = isAboveZero(battery.voltageMinDesign) ? battery.voltageMinDesign : battery.voltageNow;
    return isAboveZero(microvolts) && *microvolts >= 1000 ? Amount(*microvolts / 1000) : std::nullopt;
}

bool exceedsFull(const Amount& now, const Amount& full) {
    return now && isAboveZero(full) && *now * 10 > *full * 11;
}

/// Whether a gauge reports far more than a full charge, as macsmc does with firmware that returns the remaining
/// charge in another byte order. Only its percentage is right then.
bool isOverfull(const PowerSupply& battery) {
    return battery.capacityPercent && (exceedsFull(battery.chargeNow, battery.chargeFull) ||
                                       exceedsFull(battery.energyNow, battery.energyFull));
}

struct Level {
    std::int64_t now = 0;
    std::int64_t full = 0;
};

std::optional<Level> energyLevel(const PowerSupply& battery) {
    if (isOverfull(battery)) {
        return std::nullopt;
    }
    if (battery.energyNow && isAboveZero(battery.energyFull)) {
        return Level{*battery.energyNow, *battery.energyFull};
    }
    const auto millivolts = voltage(battery);
    if (battery.chargeNow && isAboveZero(battery.chargeFull) && millivolts) {
        return Level{*battery.chargeNow / 1000 * *millivolts, *battery.chargeFull / 1000 * *millivolts};
    }
    return std::nullopt;
}

/// The level divided by `unit`, so that the whole percentage stays the same.
Level inUnits(const Level& level, std::int64_t unit) {
    const auto full = (level.full + unit / 2) / unit;
    const auto percent = level.now * 100 / level.full;
    const auto lowest = (percent * full + 99) / 100;
    const auto highest = std::max(lowest, ((percent + 1) * full + 99) / 100 - 1);
    return {std::clamp((level.now + unit / 2) / unit, lowest, highest), full};
}

/// In mAh.
std::optional<Level> chargeLevel(const PowerSupply& battery) {
    if (isOverfull(battery)) {
        return std::nullopt;
    }
    if (battery.chargeNow && isAboveZero(battery.chargeFull)) {
        return inUnits({*battery.chargeNow, *battery.chargeFull}, 1000);
    }
    const auto millivolts = voltage(battery);
    if (battery.energyNow && isAboveZero(battery.energyFull) && millivolts) {
        return inUnits({*battery.energyNow, *battery.energyFull}, *millivolts);
    }
    return std::nullopt;
}

std::int64_t percentOf(const Level& level) {
    const auto percent = 100.0 * static_cast<double>(level.now) / static_cast<double>(level.full);
    return std::clamp<std::int64_t>(std::llround(percent), 0, 100);
}

using Batteries = std::vector<const PowerSupply*>;

/// Combines several batteries by energy, or by the mean of their percentages if one has no energy value.
std::optional<Level> combinedPercent(const Batteries& batteries) {
    Level energy;
    std::int64_t percentSum = 0;
    std::int64_t percentCount = 0;
    bool areEnergiesKnown = true;
    for (const auto* battery : batteries) {
        const auto level = energyLevel(*battery);
        areEnergiesKnown = areEnergiesKnown && level;
        energy.now += level ? level->now : 0;
        energy.full += level ? level->full : 0;
        if (battery->capacityPercent || level) {
            percentSum += battery->capacityPercent ? std::min<std::int64_t>(*battery->capacityPercent, 100)
                                                   : percentOf(*level);
            ++percentCount;
        }
    }
    if (areEnergiesKnown && energy.full > 0) {
        return Level{percentOf(energy), 100};
    }
    return percentCount > 0 ? std::optional(Level{percentSum / percentCount, 100}) : std::nullopt;
}

std::optional<Level> level(const Batteries& batteries) {
    if (batteries.size() == 1) {
        const auto charge = chargeLevel(*batteries.front());
        if (charge && charge->full > 0) {
            return Level{std::min(charge->now, charge->full), charge->full};
        }
    }
    return combinedPercent(batteries);
}

std::string healthOf(const PowerSupply& battery) {
    if (!battery.health.empty() && battery.health != "Good" && battery.health != "Unknown") {
        return battery.health;
    }
    const auto& full = battery.energyFull ? battery.energyFull : battery.chargeFull;
    const auto& design = battery.energyFull ? battery.energyFullDesign : battery.chargeFullDesign;
    const bool isWorn = isAboveZero(full) && isAboveZero(design) &&
                        static_cast<double>(*full) < serviceShare * static_cast<double>(*design);
    return isWorn ? "Service Recommended" : "Normal";
}

std::string worstHealth(const Batteries& batteries) {
    for (const auto* battery : batteries) {
        auto health = healthOf(*battery);
        if (health != "Normal") {
            return health;
        }
    }
    return "Normal";
}

using Minutes = std::optional<std::int64_t>;

Minutes gaugedMinutes(const PowerSupply& battery) {
    return isAboveZero(battery.timeToEmptySeconds) ? Minutes(*battery.timeToEmptySeconds / 60) : std::nullopt;
}

Minutes minutesOfCharge(const PowerSupply& battery) {
    const bool isKnown = battery.chargeNow && isAboveZero(battery.currentNow) && !isOverfull(battery);
    return isKnown ? Minutes(*battery.chargeNow * 60 / *battery.currentNow) : std::nullopt;
}

Minutes minutesOfEnergy(const Batteries& batteries) {
    std::int64_t energy = 0;
    std::int64_t power = 0;
    for (const auto* battery : batteries) {
        const auto level = energyLevel(*battery);
        const auto millivolts = voltage(*battery);
        energy += level ? level->now : 0;
        if (battery->powerNow) {
            power += *battery->powerNow;
        } else if (battery->currentNow && millivolts) {
            power += *battery->currentNow / 1000 * *millivolts;
        }
    }
    return power > 0 && energy > 0 ? Minutes(energy * 60 / power) : std::nullopt;
}

/// Minutes until all batteries are empty, from the first plausible source; -1 if there is none.
std::int64_t minutesToEmpty(const Batteries& batteries) {
    std::array<Minutes, 3> sources{{{}, {}, minutesOfEnergy(batteries)}};
    if (batteries.size() == 1) {
        sources[0] = gaugedMinutes(*batteries.front());
        sources[1] = minutesOfCharge(*batteries.front());
    }
    const auto* const found = std::ranges::find_if(
        sources, [](const Minutes& minutes) { return minutes && *minutes <= longestMinutes; });
    return found != sources.end() ? **found : -1;
}

/// An online charger takes precedence over the batteries; an offline one may be just one of several connectors.
/// But a USB port's state can be stale: with the mains offline, a discharging battery is believed. A battery that
/// neither charges nor discharges is held at its limit by external power, unless another one discharges: of two
/// batteries, one rests.
bool isPluggedIn(const std::vector<PowerSupply>& supplies, const Batteries& batteries) {
    const auto anyIs = [&](Status status) {
        return std::ranges::any_of(batteries, [status](const auto* battery) { return battery->status == status; });
    };
    const auto has = [&](Kind kind, bool isOnline) {
        return std::ranges::any_of(supplies, [&](const PowerSupply& supply) {
            return supply.kind == kind && !supply.isDevice && supply.isOnline == isOnline;
        });
    };
    const bool isMainsOffline = has(Kind::mains, false) && !has(Kind::mains, true);
    const bool isPortStale = isMainsOffline && anyIs(Status::discharging) && !anyIs(Status::charging);
    if (has(Kind::mains, true) || (has(Kind::port, true) && !isPortStale)) {
        return true;
    }
    const bool hasCharger = has(Kind::mains, false) || has(Kind::port, false) || has(Kind::port, true);
    if (anyIs(Status::charging)) {
        return true;
    }
    const bool rests = anyIs(Status::notCharging) || (anyIs(Status::full) && !hasCharger);
    return rests && !anyIs(Status::discharging);
}

}  // namespace

PowerSupply::Kind parseSupplyKind(std::string_view type) {
    type = trimmed(type);
    if (type == "Battery") {
        return Kind::battery;
    }
    if (type == "Mains") {
        return Kind::mains;
    }
    return type == "Wireless" || type.starts_with("USB") ? Kind::port : Kind::other;
}

PowerSupply parsePowerSupply(std::string_view uevent) {
    constexpr std::string_view prefix = "POWER_SUPPLY_";
    PowerSupply supply;
    while (!uevent.empty()) {
        const auto line = takeLine(uevent);
        const auto equals = line.find('=');
        if (line.starts_with(prefix) && equals != std::string_view::npos) {
            take(supply, line.substr(prefix.size(), equals - prefix.size()), trimmed(line.substr(equals + 1)));
        }
    }
    return supply;
}

std::optional<PowerSourceDescription> describeBatteries(const std::vector<PowerSupply>& supplies) {
    Batteries batteries;
    for (const auto& supply : supplies) {
        if (supply.kind == Kind::battery && !supply.isDevice && supply.isPresent) {
            batteries.push_back(&supply);
        }
    }
    if (batteries.empty()) {
        return std::nullopt;
    }
    const auto has = [&batteries](Status status) {
        return std::ranges::any_of(batteries, [status](const auto* battery) { return battery->status == status; });
    };
    const bool isPlugged = isPluggedIn(supplies, batteries);
    PowerSourceDescription description;
    description["Is Charging"] = has(Status::charging);
    description["Power Source State"] = std::string(isPlugged ? "AC Power" : "Battery Power");
    description["BatteryHealth"] = worstHealth(batteries);
    if (const auto charge = level(batteries)) {
        description["Current Capacity"] = charge->now;
        description["Max Capacity"] = charge->full;
    }
    if (!isPlugged) {
        description["Time to Empty"] = minutesToEmpty(batteries);
    }
    return description;
}

}  // namespace kestro
