#pragma once

#include "core/base/published.h"
#include "core/model/keep_awake_types.h"
#include "core/platform/clock.h"
#include "core/platform/power_assertions.h"

#include <memory>
#include <optional>
#include <string>

namespace kestro {

class RunLoopTimer;
class UserSettings;
struct Platform;

/// Keeps the machine, and optionally the display, from idle sleep by holding one power assertion. Counts down a
/// timed period and ends it when the time is up, on the user's request, when the battery is low, or when the
/// system revokes the assertion. Main thread only. Must not be destroyed inside one of its own notifications.
class KeepAwakeManager {
public:
    KeepAwakeManager(const Platform& platform, UserSettings& settings);
    ~KeepAwakeManager();
    KeepAwakeManager(const KeepAwakeManager&) = delete;
    KeepAwakeManager& operator=(const KeepAwakeManager&) = delete;

    /// The process-wide manager on the current platform, created on first use.
    static KeepAwakeManager& shared();

    Published<bool, KeepAwakeManager> isActive;
    Published<KeepAwakeDuration, KeepAwakeManager> currentDuration;

    /// Seconds left; nullopt while inactive or indefinite.
    Published<std::optional<double>, KeepAwakeManager> remainingSeconds;
    Published<KeepAwakeTarget, KeepAwakeManager> targetMode;

    /// Starts or restarts a period. Stores a given target, releases the old assertion and stops the countdown,
    /// then requests the new assertion; if that is refused, nothing else changes.
    void activate(KeepAwakeDuration duration, std::optional<KeepAwakeTarget> target = std::nullopt);
    void deactivate();

    /// Starts with the default duration from the settings, or stops.
    void toggle();

    /// Changing the target restarts an active period with its full duration.
    void setTargetMode(KeepAwakeTarget mode);

    /// Ends an active period when the battery is not charging and has fallen to the threshold in the settings.
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
