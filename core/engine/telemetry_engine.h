#pragma once

#include "core/base/lifetime.h"
#include "core/base/published.h"
#include "core/model/settings_enumerations.h"
#include "core/platform/clock.h"
#include "core/telemetry/cpu_telemetry.h"
#include "core/telemetry/disk_telemetry.h"
#include "core/telemetry/fan_telemetry.h"
#include "core/telemetry/memory_telemetry.h"
#include "core/telemetry/network_telemetry.h"
#include "core/telemetry/power_telemetry.h"
#include "core/telemetry/process_info_item.h"
#include "core/telemetry/thermal_telemetry.h"

#include <bitset>
#include <cstddef>
#include <cstdint>
#include <memory>
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

/// The sources that the engine samples, one reader each.
enum class TelemetrySource : std::uint8_t { fans, memory, thermals, cpu, disk, network, power };

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
/// every source; otherwise only what the status bar can display. Main thread only, except that processes are
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

    /// Whether the readout contains the CPU load, which is then sampled even while nothing else is visible,
    /// regardless of the display mode. Initially false; takes effect on the next tick.
    void setReadoutShowsLoad(bool shows) { readoutShowsLoad_ = shows; }

    /// Whether the CPU load is sampled while only the status bar is visible, because of the readout or the mode.
    bool readsLoadWhileIdle() const;

    /// Samples and publishes every source, then extends the histories. Subscribers must not take another sample.
    void sampleFull();

    /// Whether a sample has published a reading of `source`, fallbacks included. Until then the property holds its
    /// initial value, which a real reading may equal.
    bool hasSampled(TelemetrySource source) const { return sampled_.test(static_cast<std::size_t>(source)); }

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

    /// Time since boot: "5h 3m", or "2d 0h 41m" after the first day.
    std::string uptimeString() const;

    const std::string& macModel() const { return macModel_; }
    const std::string& macOSVersion() const { return macOSVersion_; }
    WallTime bootTime() const { return bootTime_; }

private:
    using History = Published<std::vector<double>, TelemetryEngine>;

    /// Samples what the status bar can display.
    void sampleLightweight();

    template <typename T>
    void publish(TelemetrySource source, Published<T, TelemetryEngine>& property, T& reading) {
        sampled_.set(static_cast<std::size_t>(source));
        property.swapIn(reading);
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
    std::bitset<7> sampled_;
    bool readoutShowsLoad_ = false;
    std::unique_ptr<RunLoopTimer> timer_;
    Lifetime lifetime_;
};

}  // namespace kestro
