#pragma once

#include "core/base/published.h"
#include "core/model/fan_curve.h"
#include "core/telemetry/fan_telemetry.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace kestro {

class RunLoopTimer;
class SMCReader;
class TelemetryEngine;
class UserSettings;
struct Platform;

/// Holds the fan profile, the two fan curves and the speeds they ask for. Speeds are computed once a second while
/// the profile is `custom`, and only displayed: nothing is ever written to the hardware. Fan 0 is the left fan,
/// fan 1 the right one. Main thread only. Must not be destroyed inside one of its own notifications.
class FanControlManager {
public:
    FanControlManager(const Platform& platform, UserSettings& settings, TelemetryEngine& engine, SMCReader& smc);
    ~FanControlManager();
    FanControlManager(const FanControlManager&) = delete;
    FanControlManager& operator=(const FanControlManager&) = delete;

    /// The process-wide manager on the current platform, created on first use.
    static FanControlManager& shared();

    Published<FanProfile, FanControlManager> currentProfile;
    Published<double, FanControlManager> customRPM;
    Published<bool, FanControlManager> hasFans;
    Published<std::int64_t, FanControlManager> fanCount;
    Published<std::vector<FanTelemetry>, FanControlManager> currentFans;
    Published<bool, FanControlManager> isLinked;
    Published<FanCurveConfig, FanControlManager> leftCurve;
    Published<FanCurveConfig, FanControlManager> rightCurve;

    /// The last applied preset, initially `balancedEveryday`; nullopt after an edit.
    Published<std::optional<CurvePreset>, FanControlManager> activePreset;
    Published<double, FanControlManager> evaluatedLeftTargetRPM;
    Published<double, FanControlManager> evaluatedRightTargetRPM;

    /// Makes `profile` current, stores it and applies it. A target is stored too, and kept in `customRPM`.
    void setProfile(FanProfile profile, std::optional<double> targetRPM = std::nullopt);

    /// Makes `profile` current and applies it without storing it, for callers that store first.
    void selectProfile(FanProfile profile);

    /// Replaces both curves with a preset, scaled to each fan's speed range, and switches to `custom`.
    void applyPreset(CurvePreset preset);

    /// Installs an edited curve for fan 0 or 1, or for both while linked, and switches to `custom`.
    void updateCurve(std::int64_t fanIndex, const FanCurveConfig& config);

    /// Links or unlinks the two curves; linking copies the left one to the right fan.
    void toggleLinking();

    /// Reads the fan inventory and applies each fan's speed range to its curve, without storing it. Called once,
    /// at construction; `followFans` handles later changes.
    void refreshHardware();

    /// Updates the inventory from sampled fans, unless only their speeds changed. A new fan applies its range to
    /// its curve. A replaced fan does so only if the curve still has the old fan's range, so user edits survive. A
    /// fan that disappears and returns does not count as new. Stores nothing.
    void followFans(const std::vector<FanTelemetry>& fans);

private:
    using Curve = Published<FanCurveConfig, FanControlManager>;

    struct SpeedRange {
        double minRPM;
        double maxRPM;

        friend bool operator==(const SpeedRange&, const SpeedRange&) = default;
    };

    static SpeedRange rangeOf(const std::vector<FanTelemetry>& fans, std::size_t index, SpeedRange fallback);
    static FanCurveConfig withRange(FanCurveConfig curve, SpeedRange range);

    /// For `custom`, evaluates the curves at once; does nothing for other profiles or without fans.
    void applyProfile(FanProfile profile);

    void takeInventory(const std::vector<FanTelemetry>& fans);
    void followRange(Curve& curve, std::size_t index);
    void startCurveEvaluator();
    void evaluateAndApplyCurves();
    void engageCustom();
    double resolveSensorTemp(SensorSource source) const;

    const Platform& platform_;
    UserSettings& settings_;
    TelemetryEngine& engine_;
    SMCReader& smc_;
    std::array<std::optional<SpeedRange>, 2> knownRanges_;  ///< left and right fan, as last seen
    std::unique_ptr<RunLoopTimer> evalTimer_;
};

}  // namespace kestro
