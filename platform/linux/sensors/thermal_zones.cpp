#include "platform/linux/sensors/thermal_zones.h"

#include "core/base/text.h"
#include "platform/linux/kernel/kernel_files.h"

#include <algorithm>
#include <utility>

namespace kestro {
namespace {

constexpr std::size_t zoneLimit = 128;
constexpr int tripLimit = 16;

std::vector<TripPoint> readTrips(const std::string& directory) {
    std::vector<TripPoint> trips;
    for (int index = 0; index < tripLimit; ++index) {
        const auto prefix = directory + "/trip_point_" + std::to_string(index);
        const auto kindText = readFile(prefix + "_type");
        if (!kindText) {
            break;
        }
        const auto kind = parseTripKind(*kindText);
        const auto text = readFile(prefix + "_temp");
        const auto temperature = text ? parseMillidegrees(*text) : std::nullopt;
        if (kind && temperature && *temperature > 0) {
            trips.push_back({*kind, *temperature});
        }
    }
    return trips;
}

}  // namespace

std::optional<std::int32_t> parseMillidegrees(std::string_view text) {
    const auto value = parseTrimmed<std::int32_t>(text);
    return value && *value > -100'000 && *value <= 300'000 ? value : std::nullopt;
}

std::optional<TripPoint::Kind> parseTripKind(std::string_view text) {
    text = trimmed(text);
    if (text == "passive") {
        return TripPoint::Kind::passive;
    }
    if (text == "hot") {
        return TripPoint::Kind::hot;
    }
    return text == "critical" ? std::optional(TripPoint::Kind::critical) : std::nullopt;
}

std::vector<ThermalZone> readThermalZones(const std::string& root) {
    constexpr std::string_view prefix = "thermal_zone";
    const auto parent = pathUnder(root, "/sys/class/thermal");
    std::vector<std::pair<std::uint32_t, std::string>> numbered;
    for (const auto& name : listDirectory(parent)) {
        if (name.starts_with(prefix)) {
            if (const auto number = parseTrimmed<std::uint32_t>(std::string_view(name).substr(prefix.size()))) {
                numbered.emplace_back(*number, parent + "/" + name);
            }
        }
    }
    std::ranges::sort(numbered);
    std::vector<ThermalZone> zones;
    for (const auto& [number, directory] : numbered) {
        const auto typeText = readFile(directory + "/type");
        auto type = typeText ? displayText(*typeText) : std::nullopt;
        const auto mode = readFile(directory + "/mode");
        const bool isDisabled = mode && trimmed(*mode) == "disabled";
        if (type && !isDisabled && zones.size() < zoneLimit) {
            zones.push_back({directory + "/temp", std::move(*type), readTrips(directory)});
        }
    }
    return zones;
}

bool hasMeaningfulTrips(std::string_view zoneType) {
    return zoneType != "x86_pkg_temp";
}

std::int64_t thermalStateAt(const std::vector<TripPoint>& trips, std::int32_t temperature) {
    std::int64_t state = 0;
    for (const auto& trip : trips) {
        if (temperature >= trip.temperature) {
            state = std::max(state, static_cast<std::int64_t>(trip.kind) + 1);
        }
    }
    return state;
}

}  // namespace kestro
