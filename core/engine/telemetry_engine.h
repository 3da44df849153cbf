#pragma once

#include "core/base/lifetime.h"
#include "core/base/published.h"
#include "core/engine/power_watch.h"
#include "core/engine/telemetry_sources.h"
#include "core/model/settings_enumerations.h"
#include "core/platform/clock.h"
#include "core/telemetry/cpu_telemetry.h"
#include "core/telemetry/disk_telemetry.h"
#include "core/telemetry/fan_telemetry.h"
#include "core/telemetry/measured_figures.h"
#include "core/telemetry/memory_telemetry.h"
#include "core/telemetry/network_telemetry.h"
#include "core/telemetry/power_telemetry.h"
#include "core/telemetry/process_info_item.h"
#include "core/telemetry/thermal_telemetry.h"

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace kestro {

class CPUReader;
class DiskReader;
class MemoryReader;
class NetworkReader;
class PowerReader;
class ProcessReader;
class RunLoopTimer;
class SMCReader;
class ThermalReader;
class UserSettings;
struct Platform;

/// The readers that an engine drives, as references that outlive it.
struct TelemetryReaders {
    CPUReader& cpu;
    MemoryReader& memory;
    DiskReader& disk;
    NetworkReader& network;
    PowerReader& power;
    SMCReader& smc;
    ThermalReader& thermal;
    ProcessReader& processes;
};

/// Drives the readers on a timer and keeps their latest results. While a window is visible, each tick samples
/// every source; otherwise only what the status bar displays. Main thread only, except that processes are
/// listed in the background and published on the main thread. Must not be destroyed inside one of its own
/// notifications.
class TelemetryEngine {
public:
    /// Starts the timer; takes no sample.
    TelemetryEngine(const Platform& platform, UserSettings& settings, const TelemetryReaders& readers);
    ~TelemetryEngine();
    TelemetryEngine(const TelemetryEngine&) = delete;
    TelemetryEngine& operator=(const TelemetryEngine&) = delete;

    /// The process-wide engine on the current platform, created on first use.
    static TelemetryEngine& shared();

    Published<std::vector<FanTelemetry>, TelemetryEngine> fans;
    Published<ThermalTelemetry, TelemetryEngine> thermals;
    Published<CPUTelemetry, TelemetryEngine> cpu;
    Published<MemoryTelemetry, TelemetryEngine> memory;
    Published<DiskTelemetry, TelemetryEngine> disk;
    Published<NetworkTelemetry, TelemetryEngine> network;
    Published<PowerTelemetry, TelemetryEngine> power;
    Published<std::vector<ProcessInfoItem>, TelemetryEngine> topProcesses;

    /// Exactly 30 entries each, oldest first. CPU in percent, network in bytes per second.
    Published<std::vector<double>, TelemetryEngine> cpuHistory;
    Published<std::vector<double>, TelemetryEngine> netDownHistory;
    Published<std::vector<double>, TelemetryEngine> netUpHistory;

    /// Whether the popover, the dashboard or the settings window is visible.
    Published<bool, TelemetryEngine> isUIActive;

    /// A changed value restarts the timer with the new period and, when true, takes a full sample at once. An
    /// equal value does nothing.
    void setUIActive(bool active);

    /// The sources that the readout shows. They are sampled even while nothing else is visible: the disk every ten
    /// seconds, the power as `setWatchesPower` says, the others on each tick. Initially none; takes effect on the
    /// next tick.
    void setReadoutSources(const TelemetrySources& sources);

    /// Whether the CPU load is sampled while only the status bar is visible, because of the readout or the mode.
    bool readsLoadWhileIdle() const;

    /// Whether to sample power every 30 s and whenever the system announces a change, even while nothing else is
    /// visible. Initially false; true also takes one sample in the next turn of the main queue.
    void setWatchesPower(bool watches);

    /// Samples and publishes every source, then extends the histories. Subscribers must not take another sample.
    void sampleFull();

    /// Whether a sample has published a reading of `source`, fallbacks included. Until then the property holds its
    /// initial value, which a real reading may equal.
    bool hasSampled(TelemetrySource source) const { return sampledAt(source).has_value(); }

    /// Which figures of the published records were measured. The first load after the start, or after the
    /// processor was not read for long, does not count: it is measured over one tick only from the next sample on.
    /// Likewise the network's rates.
    const MeasuredFigures& measured() const { return measured_; }

    /// Starts one background listing of the top processes; the last one to finish wins.
    void refreshProcesses();

    /// Restarts the timer with the current period. Call it after the polling profile changes.
    void restartTimer();

    /// Pass-through to the settings.
    bool isPinned() const;
    void setPinned(bool pinned);
    MenubarDisplayMode menubarMode() const;
    void setMenubarMode(MenubarDisplayMode mode);

    /// Display texts in the user's units.
    std::string formatTemp(double celsius) const;
    std::string formatFanRPM(double rpm) const;

    /// Time since boot: "5h 3m", or "2d 0h 41m" after the first day. Measured by the boot clock, or by the wall
    /// clock where there is none.
    std::string uptimeString() const;

    const std::string& macModel() const { return macModel_; }
    const std::string& macOSVersion() const { return macOSVersion_; }
    WallTime bootTime() const { return bootTime_; }

private:
    using History = Published<std::vector<double>, TelemetryEngine>;

    /// Samples what the status bar displays.
    void sampleLightweight();
    void samplePower();

    void readLoad();
    NetworkTelemetry readNetwork();
    ThermalTelemetry readThermals();

    const std::optional<MonotonicTime>& sampledAt(TelemetrySource source) const {
        return sampledAt_[static_cast<std::size_t>(source)];
    }

    /// Whether the readout shows the source, and its last sample is at least this old.
    bool isDueForReadout(TelemetrySource source, std::chrono::nanoseconds age = {}) const;

    /// Whether a difference between the source's last sample and now covers about one tick.
    bool spansATick(TelemetrySource source) const;

    void markSampled(TelemetrySource source);

    template <typename T>
    void publish(TelemetrySource source, Published<T, TelemetryEngine>& property, T& reading) {
        markSampled(source);
        property.swapIn(reading);
    }
    template <typename T>
    void publish(TelemetrySource source, Published<T, TelemetryEngine>& property, T&& reading) {
        publish(source, property, reading);
    }
    void append(History& history, double value);

    const Platform& platform_;
    UserSettings& settings_;
    TelemetryReaders readers_;
    std::string macModel_;
    std::string macOSVersion_;
    WallTime bootTime_;

    // Previously published values, kept for their storage so that a tick allocates nothing.
    std::vector<FanTelemetry> spareFans_;
    CPUTelemetry spareCPU_;
    std::vector<double> spareHistory_;

    bool isSampling_ = false;
    std::array<std::optional<MonotonicTime>, telemetrySourceCount> sampledAt_;
    MeasuredFigures measured_;
    TelemetrySources readoutSources_;
    std::unique_ptr<RunLoopTimer> timer_;
    PowerWatch powerWatch_;
    Lifetime lifetime_;
};

}  // namespace kestro
