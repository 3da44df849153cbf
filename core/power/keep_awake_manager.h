#pragma once

#include <memory>
#include <optional>
#include <string>

#include "core/base/published.h"
#include "core/platform/clock.h"
#include "core/platform/power_assertions.h"
#include "core/power/keep_awake_types.h"

namespace kestro {

class RunLoopTimer;
class UserSettings;
struct Platform;

/// Keeps the machine, and if wished the display, from idle sleep by holding one power assertion, counts a
/// timed period down, and ends it when the time runs out, when the user says so, when the battery is low, or
/// when the system takes the assertion away. Main thread only. Must not be destroyed from inside one of its own
/// notifications.
class KeepAwakeManager {
public:
    KeepAwakeManager(const Platform& platform, UserSettings& settings);
    ~KeepAwakeManager();
    KeepAwakeManager(const KeepAwakeManager&) = delete;
    KeepAwakeManager& operator=(const KeepAwakeManager&) = delete;

    /// The process-wide manager on the current platform, made at first use.
    static KeepAwakeManager& shared();

    Published<bool, KeepAwakeManager> isActive;
    Published<KeepAwakeDuration, KeepAwakeManager> currentDuration;

    /// Seconds left; none while inactive or without end.
    Published<std::optional<double>, KeepAwakeManager> remainingSeconds;
    Published<KeepAwakeTarget, KeepAwakeManager> targetMode;

    /// Starts, or starts again. A refused assertion changes nothing but what was released before asking.
    void activate(KeepAwakeDuration duration, std::optional<KeepAwakeTarget> target = std::nullopt);
    void deactivate();

    /// Starts with the default duration of the settings, or stops.
    void toggle();

    /// A different target restarts an active period with its full duration.
    void setTargetMode(KeepAwakeTarget mode);

    /// Ends an active period when the battery, not charging, has fallen to the threshold of the settings.
    /// `batteryLevel` in percent.
    void checkBatterySafeguard(double batteryLevel, bool isCharging);

    /// "14m 05s", "1h 59m", "Active (∞)" or "Off".
    std::string formattedRemainingTime() const;

private:
    void startTimer();
    void tick();
    void releaseAssertion();

    const Platform& platform_;
    UserSettings& settings_;
    PowerAssertionID assertionID_ = 0;
    std::unique_ptr<RunLoopTimer> timer_;
    std::optional<WallTime> expirationDate_;
};

}  // namespace kestro
