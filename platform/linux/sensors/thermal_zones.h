#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kestro {

/// A temperature at which the kernel acts (Documentation/driver-api/thermal/sysfs-api.rst), in thousandths of a
/// degree Celsius. Excludes trip points that only drive fans.
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

/// Parses thousandths of a degree Celsius as stated by hwmon and the thermal zones. nullopt: malformed, or a
/// placeholder for a missing sensor (at or below -100 or above 300 degrees).
std::optional<std::int32_t> parseMillidegrees(std::string_view text);

/// nullopt: a fan's trip point or an unknown kind.
std::optional<TripPoint::Kind> parseTripKind(std::string_view text);

/// Every enabled zone, ordered by number. Skips trip points at or below 0 degrees, which are unset.
std::vector<ThermalZone> readThermalZones(const std::string& root);

/// Whether the kernel acts on this zone's trip points. Those of "x86_pkg_temp" are only notification thresholds
/// for programs, and track the current temperature.
bool hasMeaningfulTrips(std::string_view zoneType);

/// The Mac's thermal state of a zone: 1 fair from a passive trip point, at which the kernel starts throttling, 2
/// serious from a hot one, 3 critical from a critical one, otherwise 0 nominal.
std::int64_t thermalStateAt(const std::vector<TripPoint>& trips, std::int32_t temperature);

}  // namespace kestro
