#pragma once

#include "core/platform/power_sources.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kestro {

/// What a power supply says of itself (Documentation/ABI/testing/sysfs-class-power): the lines
/// "POWER_SUPPLY_KEY=value" of its "uevent". Charge in µAh, energy in µWh, power in µW, current in µA, voltage in
/// µV. Absent: the supply does not know.
struct PowerSupply {
    enum class Kind : std::uint8_t { other, battery, charger };
    enum class Status : std::uint8_t { unknown, charging, discharging, notCharging, full };

    Kind kind = Kind::other;
    bool isDevice = false;  ///< belongs to a wireless mouse or the like, not to the machine
    bool isPresent = true;  ///< false for an empty bay
    std::optional<bool> isOnline;
    Status status = Status::unknown;
    std::optional<std::int64_t> capacityPercent;
    std::optional<std::int64_t> chargeNow;
    std::optional<std::int64_t> chargeFull;
    std::optional<std::int64_t> chargeFullDesign;
    std::optional<std::int64_t> energyNow;
    std::optional<std::int64_t> energyFull;
    std::optional<std::int64_t> energyFullDesign;
    std::optional<std::int64_t> currentNow;
    std::optional<std::int64_t> powerNow;
    std::optional<std::int64_t> voltageNow;
    std::optional<std::int64_t> voltageMinDesign;
    std::optional<std::int64_t> timeToEmptySeconds;
    std::string health;
};

/// The kind by the word in a supply's "type": mains, USB and wireless supplies are chargers.
PowerSupply::Kind parseSupplyKind(std::string_view type);

/// Lines that are malformed or unknown are left out; negative amounts are made positive, since drivers disagree
/// on the sign of a discharge.
PowerSupply parsePowerSupply(std::string_view uevent);

/// The machine's batteries as the one power source that its user knows, or none. `supplies` are all power
/// supplies of the machine.
///
/// A single battery states its charge in mAh; where it counts energy, the voltage converts it. One that knows
/// only its percentage, and several batteries together, state percent of 100. External power is there when a
/// charger is online or a battery charges, is held at a limit, or is full on a machine that reports no charger.
/// "BatteryHealth" is "Service Recommended" when a full charge is below 80 % of the design, the driver's word
/// when that is worse than good, else "Normal". "Time to Empty" comes while discharging only, in minutes up to a
/// week; -1: not known yet.
std::optional<PowerSourceDescription> describeBatteries(const std::vector<PowerSupply>& supplies);

}  // namespace kestro
