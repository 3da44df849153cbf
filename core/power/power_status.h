#pragma once

#include "core/base/published.h"
#include "core/base/subscription.h"
#include "core/model/system_power_mode.h"

#include <array>
#include <string>
#include <vector>

namespace kestro {

class KeepAwakeManager;
class PowerModeManager;
class TelemetryEngine;
class UserSettings;
struct Platform;

/// What keep-awake really does, beside what its manager was told.
struct KeepAwakeStatus {
    bool isHeld = false;  ///< at least one lock is known to hold
    std::string note;     ///< who holds it, or why no service does; empty: nothing to say

    friend bool operator==(const KeepAwakeStatus&, const KeepAwakeStatus&) = default;
};

/// Why a power mode is unavailable, or why a switch to it failed; empty: nothing to report. In case order.
using PowerModeNotes = std::array<std::string, allCases<SystemPowerMode>().size()>;

/// What the system made of keep-awake and of the power mode, for display. The managers report only what
/// succeeded; this follows the services below them. It also has the engine watch the battery while keep-awake
/// is active and its cut-off is on. Main thread only.
class PowerStatus {
public:
    PowerStatus(const Platform& platform, UserSettings& settings, TelemetryEngine& engine,
                KeepAwakeManager& keepAwakeManager, PowerModeManager& powerModeManager);
    ~PowerStatus();
    PowerStatus(const PowerStatus&) = delete;
    PowerStatus& operator=(const PowerStatus&) = delete;

    /// The process-wide object on the current platform, created on first use.
    static PowerStatus& shared();

    Published<KeepAwakeStatus, PowerStatus> keepAwake;
    Published<PowerModeNotes, PowerStatus> powerModeNotes;

private:
    void activityChanged();
    void watchBattery();
    void updateKeepAwake();
    void updatePowerModes();
    KeepAwakeStatus keepAwakeStatus() const;
    std::string offNote() const;

    const Platform& platform_;
    UserSettings& settings_;
    TelemetryEngine& engine_;
    KeepAwakeManager& keepAwakeManager_;
    PowerModeManager& powerModeManager_;
    std::string batteryNote_;  // the battery ended keep-awake
    std::vector<Subscription> subscriptions_;
};

}  // namespace kestro
