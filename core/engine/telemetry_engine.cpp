#include "core/engine/telemetry_engine.h"

#include "core/base/text.h"
#include "core/platform/platform.h"
#include "core/platform/process_info_service.h"
#include "core/platform/run_loop.h"
#include "core/platform/system_control.h"
#include "core/settings/user_settings.h"
#include "core/telemetry/cpu_reader.h"
#include "core/telemetry/disk_reader.h"
#include "core/telemetry/memory_reader.h"
#include "core/telemetry/network_reader.h"
#include "core/telemetry/power_reader.h"
#include "core/telemetry/process_reader.h"
#include "core/telemetry/smc_reader.h"
#include "core/telemetry/thermal_reader.h"

#include <fmt/format.h>

#include <algorithm>
#include <cassert>
#include <chrono>
#include <cmath>
#include <utility>

namespace kestro {

namespace {

constexpr std::size_t historyLength = 30;
constexpr auto diskAge = std::chrono::seconds(10);

// Ticks are coarse: one that comes a little early still counts.
constexpr auto coarseness = std::chrono::milliseconds(100);

// The kernel counts processor time in ticks of up to 10 ms.
constexpr auto shortestSpan = std::chrono::milliseconds(20);

/// Whether a display mode also samples the CPU load while only the status bar is visible.
bool readsCPUWhileIdle(MenubarDisplayMode mode) {
    return mode == MenubarDisplayMode::combined || mode == MenubarDisplayMode::tripleGlance ||
           mode == MenubarDisplayMode::cpuOnly;
}

/// Marks that a sample is being taken: its subscribers must not take another.
class Sampling {
public:
    explicit Sampling(bool& isSampling) : isSampling_(isSampling) {
        assert(!isSampling_);
        isSampling_ = true;
    }
    ~Sampling() { isSampling_ = false; }
    Sampling(const Sampling&) = delete;
    Sampling& operator=(const Sampling&) = delete;

private:
    bool& isSampling_;
};

std::string modelText(SystemControl& system) {
    const auto model = system.sysctlByNameText("hw.model").value_or("");
    const auto brand = system.sysctlByNameText("machdep.cpu.brand_string").value_or("");
    return brand.empty() ? model : fmt::format("{} ({})", brand, model);
}

std::string versionText(ProcessInfoService& processInfo) {
    const auto version = processInfo.operatingSystemVersion();
    return fmt::format("{} {}.{}.{}", version.productName, version.major, version.minor, version.patch);
}

WallTime bootTimeOf(const Platform& platform) {
    // The range of the clock's type; clamp a kernel value outside it.
    constexpr std::int64_t latest = 9'000'000'000;
    const auto boot = platform.systemControl.bootTime();
    return boot ? WallTime(std::chrono::seconds(std::clamp<std::int64_t>(boot->seconds, 0, latest)))
                : platform.clock.wallNow();
}

}  // namespace

TelemetryEngine::TelemetryEngine(const Platform& platform, UserSettings& settings, const TelemetryReaders& readers)
    : thermals(ThermalTelemetry::initial()),
      cpu(CPUTelemetry::initial()),
      memory(MemoryTelemetry::initial()),
      disk(DiskTelemetry::initial()),
      network(NetworkTelemetry::initial()),
      power(PowerTelemetry::initial()),
      cpuHistory(std::vector<double>(historyLength)),
      netDownHistory(std::vector<double>(historyLength)),
      netUpHistory(std::vector<double>(historyLength)),
      platform_(platform),
      settings_(settings),
      readers_(readers),
      macModel_(modelText(platform.systemControl)),
      macOSVersion_(versionText(platform.processInfo)),
      bootTime_(bootTimeOf(platform)),
      powerWatch_(platform, [this] { samplePower(); }) {
    restartTimer();
}

TelemetryEngine::~TelemetryEngine() = default;

TelemetryEngine& TelemetryEngine::shared() {
    // Never destroyed: views may still hold subscriptions while the process ends.
    static auto* const engine = new TelemetryEngine(
        Platform::current(), UserSettings::shared(),
        {CPUReader::shared(), MemoryReader::shared(), DiskReader::shared(), NetworkReader::shared(),
         PowerReader::shared(), SMCReader::shared(), ThermalReader::shared(), ProcessReader::shared()});
    return *engine;
}

void TelemetryEngine::setUIActive(bool active) {
    if (active == isUIActive.get()) {
        return;
    }
    isUIActive.set(active);
    restartTimer();
    if (isUIActive.get()) {
        sampleFull();
    }
}

void TelemetryEngine::restartTimer() {
    const PollingProfile profile = settings_.pollingProfile.get();
    const double seconds = isUIActive.get() ? activeInterval(profile) : idleInterval(profile);
    timer_.reset();
    timer_ = platform_.runLoop.scheduleRepeating(std::chrono::milliseconds(std::llround(seconds * 1000)), [this] {
        if (isUIActive.get()) {
            sampleFull();
        } else {
            sampleLightweight();
        }
    });
}

void TelemetryEngine::sampleFull() {
    const Sampling sampling(isSampling_);
    readers_.smc.readFans(spareFans_);
    readers_.smc.readLabels(spareFans_);
    auto newMemory = readers_.memory.read();
    auto newThermals = readThermals();
    readLoad();
    auto newDisk = readers_.disk.read();
    auto newNetwork = readNetwork();
    auto newPower = readers_.power.read();

    publish(TelemetrySource::fans, fans, spareFans_);
    publish(TelemetrySource::memory, memory, newMemory);
    publish(TelemetrySource::thermals, thermals, newThermals);
    publish(TelemetrySource::cpu, cpu, spareCPU_);
    publish(TelemetrySource::disk, disk, newDisk);
    publish(TelemetrySource::network, network, newNetwork);
    publish(TelemetrySource::power, power, newPower);

    append(cpuHistory, cpu.get().totalUsage);
    append(netDownHistory, network.get().downloadBytesPerSec);
    append(netUpHistory, network.get().uploadBytesPerSec);
    if (settings_.showTopProcesses.get()) {
        refreshProcesses();
    }
}

void TelemetryEngine::sampleLightweight() {
    const Sampling sampling(isSampling_);
    readers_.smc.readFans(spareFans_);
    publish(TelemetrySource::fans, fans, spareFans_);
    publish(TelemetrySource::memory, memory, readers_.memory.read());
    if (readsLoadWhileIdle()) {
        readLoad();
        publish(TelemetrySource::cpu, cpu, spareCPU_);
    }
    if (isDueForReadout(TelemetrySource::thermals)) {
        publish(TelemetrySource::thermals, thermals, readThermals());
    }
    if (isDueForReadout(TelemetrySource::disk, diskAge)) {
        publish(TelemetrySource::disk, disk, readers_.disk.read());
    }
    if (isDueForReadout(TelemetrySource::network)) {
        publish(TelemetrySource::network, network, readNetwork());
    }
}

void TelemetryEngine::setWatchesPower(bool watches) {
    powerWatch_.setReason(PowerWatch::Reason::cutOff, watches);
}

void TelemetryEngine::setReadoutSources(const TelemetrySources& sources) {
    readoutSources_ = sources;
    powerWatch_.setReason(PowerWatch::Reason::readout, sources.contains(TelemetrySource::power));
}

void TelemetryEngine::samplePower() {
    const Sampling sampling(isSampling_);
    publish(TelemetrySource::power, power, readers_.power.read());
}

bool TelemetryEngine::readsLoadWhileIdle() const {
    return readoutSources_.contains(TelemetrySource::cpu) || readsCPUWhileIdle(settings_.menubarDisplayMode.get());
}

void TelemetryEngine::readLoad() {
    readers_.cpu.readCPU(spareCPU_);
    measured_.load = spansATick(TelemetrySource::cpu);
}

NetworkTelemetry TelemetryEngine::readNetwork() {
    measured_.rates = spansATick(TelemetrySource::network);
    return readers_.network.read();
}

ThermalTelemetry TelemetryEngine::readThermals() {
    auto record = readers_.thermal.readThermals();
    measured_.temperatures = readers_.thermal.measured();
    return record;
}

bool TelemetryEngine::isDueForReadout(TelemetrySource source, std::chrono::nanoseconds age) const {
    const auto& last = sampledAt(source);
    return readoutSources_.contains(source) &&
           (!last || platform_.clock.monotonicNow() - *last >= age - coarseness);
}

bool TelemetryEngine::spansATick(TelemetrySource source) const {
    const auto& last = sampledAt(source);
    if (!last) {
        return false;
    }
    const auto span = platform_.clock.monotonicNow() - *last;
    const std::chrono::duration<double> longestSpan(2 * idleInterval(settings_.pollingProfile.get()));
    return span >= shortestSpan && span <= longestSpan;
}

void TelemetryEngine::markSampled(TelemetrySource source) {
    sampledAt_[static_cast<std::size_t>(source)] = platform_.clock.monotonicNow();
}

void TelemetryEngine::append(History& history, double value) {
    spareHistory_ = history.get();
    std::rotate(spareHistory_.begin(), spareHistory_.begin() + 1, spareHistory_.end());
    spareHistory_.back() = value;
    history.swapIn(spareHistory_);
}

void TelemetryEngine::refreshProcesses() {
    const bool sortByCPU = settings_.processSortMetric.get() == ProcessSortMetric::cpu;
    const std::int64_t limit = settings_.processCountLimit.get();
    RunLoop& runLoop = platform_.runLoop;
    ProcessReader& reader = readers_.processes;
    runLoop.runInBackground(TaskPriority::userInitiated,
                            [this, &runLoop, &reader, sortByCPU, limit, engineLife = lifetime_.watch()] {
                                auto processes = reader.readTopProcesses(sortByCPU, limit);
                                runLoop.post([this, engineLife, processes = std::move(processes)]() mutable {
                                    if (!engineLife.expired()) {
                                        topProcesses.set(std::move(processes));
                                    }
                                });
                            });
}

bool TelemetryEngine::isPinned() const {
    return settings_.isPinned.get();
}

void TelemetryEngine::setPinned(bool pinned) {
    settings_.isPinned.set(pinned);
}

MenubarDisplayMode TelemetryEngine::menubarMode() const {
    return settings_.menubarDisplayMode.get();
}

void TelemetryEngine::setMenubarMode(MenubarDisplayMode mode) {
    settings_.menubarDisplayMode.set(mode);
}

std::string TelemetryEngine::formatTemp(double celsius) const {
    return format(settings_.temperatureUnit.get(), celsius);
}

std::string TelemetryEngine::formatFanRPM(double rpm) const {
    return format(settings_.fanSpeedUnit.get(), wholeNumber(rpm));
}

std::string TelemetryEngine::uptimeString() const {
    // The wall clock may be set after boot, or after this program's start: machines without a real-time clock set
    // it once they are on the network.
    const auto sinceBoot = platform_.clock.sinceBoot().value_or(platform_.clock.wallNow() - bootTime_);
    const auto since = std::chrono::duration_cast<std::chrono::seconds>(sinceBoot);
    // Do not go negative after the wall clock is set back.
    const std::int64_t seconds = std::max<std::int64_t>(since.count(), 0);
    const std::int64_t days = seconds / 86400;
    const std::int64_t hours = seconds % 86400 / 3600;
    const std::int64_t minutes = seconds % 3600 / 60;
    return days == 0 ? fmt::format("{}h {}m", hours, minutes) : fmt::format("{}d {}h {}m", days, hours, minutes);
}

}  // namespace kestro
