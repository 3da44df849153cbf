#pragma once

#include <bitset>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "core/base/lifetime.h"
#include "core/base/published.h"
#include "core/platform/clock.h"
#include "core/settings/settings_enumerations.h"
#include "core/telemetry/cpu_telemetry.h"
#include "core/telemetry/disk_telemetry.h"
#include "core/telemetry/fan_telemetry.h"
#include "core/telemetry/memory_telemetry.h"
#include "core/telemetry/network_telemetry.h"
#include "core/telemetry/power_telemetry.h"
#include "core/telemetry/process_info_item.h"
#include "core/telemetry/thermal_telemetry.h"

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

/// What the engine samples, one reader each.
enum class TelemetrySource : std::uint8_t { fans, memory, thermals, cpu, disk, network, power };

/// The readers that one engine drives; references that outlive it.
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

/// Drives the readers on a timer and keeps their latest results. While a window shows, each tick samples
/// every source; otherwise only what the status bar can display. Main thread only, but for the process
/// listing, which runs in the background and is assigned back on the main thread.
/// Must not be destroyed from inside one of its own notifications.
class TelemetryEngine {
public:
    /// Starts the timer; takes no sample.
    TelemetryEngine(const Platform& platform, UserSettings& settings, const TelemetryReaders& readers);
    ~TelemetryEngine();
    TelemetryEngine(const TelemetryEngine&) = delete;
    TelemetryEngine& operator=(const TelemetryEngine&) = delete;

    /// The process-wide engine on the current platform, made at first use.
    static TelemetryEngine& shared();

    Published<std::vector<FanTelemetry>, TelemetryEngine> fans;
    Published<ThermalTelemetry, TelemetryEngine> thermals;
    Published<CPUTelemetry, TelemetryEngine> cpu;
    Published<MemoryTelemetry, TelemetryEngine> memory;
    Published<DiskTelemetry, TelemetryEngine> disk;
    Published<NetworkTelemetry, TelemetryEngine> network;
    Published<PowerTelemetry, TelemetryEngine> power;
    Published<std::vector<ProcessInfoItem>, TelemetryEngine> topProcesses;

    /// Exactly 30 entries each, oldest first: percent, and bytes per second.
    Published<std::vector<double>, TelemetryEngine> cpuHistory;
    Published<std::vector<double>, TelemetryEngine> netDownHistory;
    Published<std::vector<double>, TelemetryEngine> netUpHistory;

    /// Whether the popover, the dashboard or the settings window is showing.
    Published<bool, TelemetryEngine> isUIActive;

    /// A changed value restarts the timer with its new period and, when true, samples everything at once;
    /// an equal value does nothing.
    void setUIActive(bool active);

    /// Whether the readout contains the processor's load, which is then read also while nothing else shows,
    /// whatever the display mode says. False at first; counts from the next tick.
    void setReadoutShowsLoad(bool shows) { readoutShowsLoad_ = shows; }

    /// Whether the processor's load is read while only the status bar shows: for the readout or by the mode.
    bool readsLoadWhileIdle() const;

    /// Takes and publishes one sample of every source. When a subscriber has a newer sample taken meanwhile,
    /// the rest of the older one is neither published nor entered in the histories.
    void sampleFull();

    /// Whether a sample has published a reading of `source`, a fallback included. Until then its property holds
    /// the initial value, which a reading may equal.
    bool hasSampled(TelemetrySource source) const { return sampled_.test(static_cast<std::size_t>(source)); }

    /// Starts one background listing of the top processes; the one that finishes last is kept.
    void refreshProcesses();

    /// Replaces the timer with one of the current period, for after a change of the polling profile.
    void restartTimer();

    /// Pass-through to the settings.
    bool isPinned() const;
    void setPinned(bool pinned);
    MenubarDisplayMode menubarMode() const;
    void setMenubarMode(MenubarDisplayMode mode);

    /// Display texts in the units that the user chose.
    std::string formatTemp(double celsius) const;
    std::string formatFanRPM(double rpm) const;

    /// Time since the machine booted: "5h 3m", or "2d 0h 41m" from one day on.
    std::string uptimeString() const;

    const std::string& macModel() const { return macModel_; }
    const std::string& macOSVersion() const { return macOSVersion_; }
    WallTime bootTime() const { return bootTime_; }

private:
    using History = Published<std::vector<double>, TelemetryEngine>;

    /// What one sample adds to the three histories, which stay in step with one another.
    struct HistoryEntry {
        double totalUsage;
        double downloadBytesPerSec;
        double uploadBytesPerSec;
    };

    /// What the status bar can display, as `sampleFull` does it when a newer sample is taken meanwhile.
    void sampleLightweight();
    void markSampled(TelemetrySource source) { sampled_.set(static_cast<std::size_t>(source)); }
    void enterHistories(const HistoryEntry& newest);
    void append(History& history, double value);

    const Platform& platform_;
    UserSettings& settings_;
    TelemetryReaders readers_;
    std::string macModel_;
    std::string macOSVersion_;
    WallTime bootTime_;

    // What was published before the present values, kept for its storage: a tick allocates nothing.
    std::vector<FanTelemetry> spareFans_;
    CPUTelemetry spareCPU_;
    std::vector<double> spareHistory_;
    std::vector<HistoryEntry> pendingEntries_;
    bool isEnteringHistories_ = false;

    std::uint64_t newestSample_ = 0;
    std::bitset<7> sampled_;
    bool readoutShowsLoad_ = false;
    std::unique_ptr<RunLoopTimer> timer_;
    Lifetime lifetime_;
};

}  // namespace kestro
