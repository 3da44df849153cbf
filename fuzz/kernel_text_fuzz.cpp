#include "core/base/text.h"
#include "platform/linux/battery/linux_power_events.h"
#include "platform/linux/battery/power_supply.h"
#include "platform/linux/machine/cpu_topology.h"
#include "platform/linux/machine/firmware_identity.h"
#include "platform/linux/machine/machine_identity.h"
#include "platform/linux/machine/memory_pressure.h"
#include "platform/linux/machine/mount_table.h"
#include "platform/linux/machine/os_release.h"
#include "platform/linux/machine/proc_meminfo.h"
#include "platform/linux/machine/proc_stat.h"
#include "platform/linux/machine/proc_swaps.h"
#include "platform/linux/machine/storage_volume.h"
#include "platform/linux/network/interface_traffic.h"
#include "platform/linux/sensors/hwmon_chip.h"
#include "platform/linux/sensors/sensor_names.h"
#include "platform/linux/sensors/thermal_zones.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

namespace kestro {
namespace {

void require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

void readProcessors(std::string_view text) {
    std::vector<CoreTicks> cores;
    parseProcStatCores(text, cores);
    require(cores.size() <= coreLimit);
    require(parseCoreList(text).size() <= coreLimit);
    require(parseBootTime(text).value_or(1) > 0);
    require(parseUptime(text).value_or(0) >= 0);
}

void readMemory(std::string_view text) {
    const MemoryPools pools{parseZramPool(text).value_or(0), parseReclaimableArc(text).value_or(0)};
    if (const auto info = parseMemoryInfo(text)) {
        require(info->total > 0 && info->available <= info->total && info->swapFree <= info->swapTotal);
        require(pressureLevel(*info, pools.reclaimableFileCache) >= pressureNormal);
        // A sum that wrapped would be smaller than the largest of the three shares.
        const auto statistics = virtualMemoryStatistics(*info, pools, 4096);
        const auto used =
            std::uint64_t{statistics.activeCount} + statistics.wireCount + statistics.compressorPageCount;
        require(used <= info->total / 4096 + 1);
    }
    if (const auto stall = parsePressureStall(text)) {
        require(pressureLevel(*stall) >= pressureNormal);
    }
    if (const auto usage = parseSwaps(text)) {
        require(usage->used <= usage->total);
    }
}

void readMounts(std::string_view text) {
    const auto mounts = parseMountInfo(text);
    if (!mounts.empty()) {
        require(mounts.front().point.starts_with('/'));
        require(mountAt(mounts, mounts.front().point) != nullptr);
        require(mountOf(mounts, mounts.front().point) != nullptr);
        isImage(mounts.front());
    }
}

void readIdentity(std::string_view text) {
    const auto brand = parseProcessorBrand(text);
    require(!brand || isValidUtf8(*brand));
    appleChipName(text);
    isFirmwareFiller(text);
    const std::string field(text);
    const auto product = productName({field, field, field, field, field, field, field, field});
    require(!product || !product->empty());
    virtualMachineName({field, field, field, field, field, field, field, field});
    const auto release = parseOsRelease(text);
    require(!release.name || displayText(*release.name) == release.name);
    parseVersionNumbers(text);
    require(!isDieName(nameOutsideDie(text)));
    const auto shown = displayText(text);
    require(!shown || (isValidUtf8(*shown) && displayText(*shown) == shown));
}

void readDevices(std::string_view text) {
    parseTripKind(text);
    parseSupplyKind(text);
    isPowerSupplyEvent(text);
    chipKind(text);
    isFloatingInput(text);
    zoneName(text);
    require(parseMillidegrees(text).value_or(0) <= 300'000);
    std::vector<InterfaceTraffic> traffic;
    parseInterfaceTraffic(text, traffic);
    auto supply = parsePowerSupply(text);
    supply.kind = PowerSupply::Kind::battery;
    const auto description = describeBatteries({supply, supply});
    const auto single = describeBatteries({supply});
    require(description.has_value() == single.has_value());
}

}  // namespace
}  // namespace kestro

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    kestro::readProcessors(text);
    kestro::readMemory(text);
    kestro::readMounts(text);
    kestro::readIdentity(text);
    kestro::readDevices(text);
    return 0;
}
