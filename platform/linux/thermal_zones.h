#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kestro {

/// A temperature at which the kernel acts (Documentation/driver-api/thermal/sysfs-api.rst), in thousandths of
/// a degree Celsius. Trip points that only drive fans are of no interest here.
struct TripPoint {
    enum class Kind : std::uint8_t { passive, hot, critical };

    Kind kind = Kind::passive;
    std::int32_t temperature = 0;
};

/// A zone of /sys/class/thermal.
struct ThermalZone {
    std::string temperaturePath;
    std::string type;
    std::vector<TripPoint> trips;
};

/// Thousandths of a degree Celsius as hwmon and the thermal zones state them. nullopt: malformed, or a value
/// that stands for none because no sensor measures it (at or below -100 or above 300 degrees).
std::optional<std::int32_t> parseMillidegrees(std::string_view text);

/// nullopt: a fan's trip point or an unknown kind.
std::optional<TripPoint::Kind> parseTripKind(std::string_view text);

/// Every enabled zone by number. Trip points that are not above 0 degrees are not set and are left out.
std::vector<ThermalZone> readThermalZones(const std::string& root);

/// Whether the kernel acts on this zone's trip points. Those of "x86_pkg_temp" are only thresholds at which a
/// program wants to be told, and lie close to whatever the temperature is.
bool hasMeaningfulTrips(std::string_view zoneType);

/// The Mac's thermal state of a zone: 1 fair from a passive trip point on, where the kernel begins to slow the
/// machine down, 2 serious from a hot one on, 3 critical from a critical one on, else 0 nominal.
std::int64_t thermalStateAt(const std::vector<TripPoint>& trips, std::int32_t temperature);

}  // namespace kestro
