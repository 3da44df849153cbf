#include "platform/linux/machine/linux_process_info_service.h"

#include "platform/linux/machine/os_release.h"
#include "platform/linux/machine/proc_meminfo.h"

#include <sys/sysinfo.h>

#include <algorithm>
#include <chrono>
#include <utility>

namespace kestro {
namespace {

constexpr std::chrono::seconds statePeriod{2};
constexpr std::chrono::seconds zonePeriod{60};

}  // namespace

LinuxProcessInfoService::LinuxProcessInfoService(const Clock& clock, std::string root)
    : clock_(clock), root_(std::move(root)) {}

std::uint64_t LinuxProcessInfoService::physicalMemory() {
    const auto text = readFile(pathUnder(root_, "/proc/meminfo"));
    if (const auto info = text ? parseMemoryInfo(*text) : std::nullopt) {
        return info->total;
    }
    struct sysinfo system {};
    const bool isThisMachine = pathUnder(root_, "").empty();
    return isThisMachine && ::sysinfo(&system) == 0 ? std::uint64_t{system.totalram} * system.mem_unit : 0;
}

void LinuxProcessInfoService::findZones() {
    zones_.clear();
    for (auto& zone : readThermalZones(root_)) {
        if (!zone.trips.empty() && hasMeaningfulTrips(zone.type)) {
            zones_.push_back({PersistentFile(std::move(zone.temperaturePath)), std::move(zone.trips)});
        }
    }
}

std::int64_t LinuxProcessInfoService::thermalState() {
    const auto now = clock_.monotonicNow();
    if (stateRead_ && now - *stateRead_ < statePeriod) {
        return state_;
    }
    stateRead_ = now;
    if (!zonesFound_ || now - *zonesFound_ >= zonePeriod) {
        zonesFound_ = now;
        findZones();
    }
    state_ = 0;
    for (auto& zone : zones_) {
        const auto text = zone.temperature.read(buffer_);
        if (const auto temperature = text ? parseMillidegrees(*text) : std::nullopt) {
            state_ = std::max(state_, thermalStateAt(zone.trips, *temperature));
        }
    }
    return state_;
}

OperatingSystemVersion LinuxProcessInfoService::operatingSystemVersion() {
    auto text = readFile(pathUnder(root_, "/etc/os-release"));
    if (!text) {
        text = readFile(pathUnder(root_, "/usr/lib/os-release"));
    }
    const auto release = text ? parseOsRelease(*text) : OsRelease{};
    auto version = release.version;
    if (!version) {
        const auto kernel = readFile(pathUnder(root_, "/proc/sys/kernel/osrelease"));
        version = kernel ? parseVersionNumbers(*kernel) : std::nullopt;
    }
    const auto [major, minor, patch] = version.value_or(VersionNumbers{});
    return {release.name.value_or("Linux"), major, minor, patch};
}

}  // namespace kestro
