#include "platform/linux/machine/linux_system_control.h"

#include "platform/linux/machine/machine_identity.h"
#include "platform/linux/machine/memory_pressure.h"
#include "platform/linux/machine/proc_meminfo.h"
#include "platform/linux/machine/proc_stat.h"
#include "platform/linux/machine/proc_swaps.h"

#include <chrono>
#include <vector>

namespace kestro {
namespace {

constexpr std::size_t statLimit = std::size_t{8} << 20;

std::optional<std::int32_t> positive(std::size_t count) {
    return count > 0 ? std::optional(static_cast<std::int32_t>(count)) : std::nullopt;
}

}  // namespace

LinuxSystemControl::LinuxSystemControl(const Clock& clock, std::string root)
    : clock_(clock),
      root_(std::move(root)),
      pressure_(pathUnder(root_, "/proc/pressure/memory")),
      swaps_(pathUnder(root_, "/proc/swaps")),
      memInfo_(pathUnder(root_, "/proc/meminfo")),
      pools_(root_),
      cores_(root_) {}

void LinuxSystemControl::countCores() {
    areCoresCounted_ = true;
    const auto stat = readFile(pathUnder(root_, "/proc/stat"), statLimit);
    std::vector<CoreTicks> online;
    if (stat) {
        parseProcStatCores(*stat, online);
        cores_.follow(online);
    }
}

const CoreLayout& LinuxSystemControl::cores() {
    if (!areCoresCounted_) {
        countCores();
    }
    return cores_;
}

std::optional<std::int32_t> LinuxSystemControl::memoryPressureLevel() {
    if (const auto text = pressure_.read(buffer_)) {
        if (const auto stall = parsePressureStall(*text)) {
            return pressureLevel(*stall);
        }
    }
    const auto text = memInfo_.read(buffer_);
    const auto info = text ? parseMemoryInfo(*text) : std::nullopt;
    if (!info) {
        return std::nullopt;
    }
    return pressureLevel(*info, pools_.read(clock_.monotonicNow(), buffer_).reclaimableFileCache);
}

std::optional<std::int32_t> LinuxSystemControl::sysctlByNameInt32(std::string_view name) {
    if (name == "kern.memorystatus_vm_pressure_level") {
        return memoryPressureLevel();
    }
    if (name == "hw.perflevel0.physicalcpu") {
        countCores();
        return positive(cores_.performanceCount());
    }
    if (name == "hw.perflevel1.physicalcpu") {
        return positive(cores().efficiencyCount());
    }
    return std::nullopt;
}

std::optional<std::string> LinuxSystemControl::sysctlByNameText(std::string_view name) {
    if (name == "hw.model") {
        return readMachineModel(root_);
    }
    if (name == "machdep.cpu.brand_string") {
        return readProcessorBrand(root_);
    }
    if (name == "hw.perflevel0.name" && cores().performanceCount() > 0) {
        return "Performance";
    }
    if (name == "hw.perflevel1.name" && cores().efficiencyCount() > 0) {
        return "Efficiency";
    }
    return std::nullopt;
}

std::optional<SwapUsage> LinuxSystemControl::swapUsage() {
    if (const auto text = swaps_.read(buffer_)) {
        if (const auto usage = parseSwaps(*text)) {
            return usage;
        }
    }
    const auto text = memInfo_.read(buffer_);
    const auto info = text ? parseMemoryInfo(*text) : std::nullopt;
    return info ? std::optional(SwapUsage{info->swapTotal, info->swapTotal - info->swapFree}) : std::nullopt;
}

std::optional<TimeValue> LinuxSystemControl::bootTime() {
    const auto stat = readFile(pathUnder(root_, "/proc/stat"), statLimit);
    if (const auto seconds = stat ? parseBootTime(*stat) : std::nullopt) {
        return TimeValue{*seconds, 0};
    }
    const auto text = readFile(pathUnder(root_, "/proc/uptime"));
    const auto uptime = text ? parseUptime(*text) : std::nullopt;
    if (!uptime) {
        return std::nullopt;
    }
    using namespace std::chrono;
    const auto now = duration_cast<microseconds>(clock_.wallNow().time_since_epoch()).count();
    const auto boot = now - static_cast<std::int64_t>(*uptime * 1e6);
    return boot < 0 ? std::nullopt : std::optional(TimeValue{boot / 1'000'000, boot % 1'000'000});
}

}  // namespace kestro
