#pragma once

#include "core/platform/power_sources.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kestro {

/// The properties of a power supply (Documentation/ABI/testing/sysfs-class-power): the lines
/// "POWER_SUPPLY_KEY=value" of its "uevent". Charge in µAh, energy in µWh, power in µW, current in µA, voltage in
/// µV. Absent: unknown to the supply.
struct PowerSupply {
    /// Mains and ports are chargers; a port is a USB connector or a wireless receiver.
    enum class Kind : std::uint8_t { other, battery, mains, port };
    enum class Status : std::uint8_t { unknown, charging, discharging, notCharging, full };

    Kind kind = Kind::other;
    bool isDevice = false;  ///< belongs to a peripheral such as a wireless mouse, not to the machine
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

/// Determines the kind from a supply's "type".
PowerSupply::Kind parseSupplyKind(std::string_view type);

/// Skips malformed and unknown lines. Negative amounts become positive, because drivers disagree on the sign of a
/// discharge.
PowerSupply parsePowerSupply(std::string_view uevent);

/// The machine's batteries as one power source, or nullopt without a battery. `supplies` are all power supplies of
/// the machine.
///
/// A single battery reports its charge in mAh; an energy value is converted using the voltage. A battery that has
/// only a percentage, and several batteries together, report percent of 100. If a battery that has a percentage
/// claims more than 1.1 full charges, its charge and energy are ignored.
/// The machine is on external power if a charger is online, or if a battery charges, is held at a limit, or is
/// full while no charger is reported. A port does not count as online while the mains are offline and a battery
/// discharges. "BatteryHealth" is "Service Recommended" when a full charge is below 80 % of the design; otherwise
/// the driver's word if worse than good, else "Normal". "Time to Empty" is present only while discharging, in
/// minutes up to a week; -1: not known yet.
std::optional<PowerSourceDescription> describeBatteries(const std::vector<PowerSupply>& supplies);

}  // namespace kestro
