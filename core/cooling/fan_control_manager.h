#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "core/base/published.h"
#include "core/cooling/fan_curve.h"
#include "core/telemetry/fan_telemetry.h"

namespace kestro {

class RunLoopTimer;
class SMCReader;
class TelemetryEngine;
class UserSettings;
struct Platform;

/// Holds the cooling choice, the two fan curves and the speeds that they ask for. The speeds are computed
/// once a second while the profile is `custom`, and only displayed: nothing is ever written to the hardware.
/// Fan 0 is the left fan, fan 1 the right one. Main thread only. Must not be destroyed from inside one
/// of its own notifications.
class FanControlManager {
public:
    FanControlManager(const Platform& platform, UserSettings& settings, TelemetryEngine& engine, SMCReader& smc);
    ~FanControlManager();
    FanControlManager(const FanControlManager&) = delete;
    FanControlManager& operator=(const FanControlManager&) = delete;

    /// The process-wide manager on the current platform, made at first use.
    static FanControlManager& shared();

    Published<FanProfile, FanControlManager> currentProfile;
    Published<double, FanControlManager> customRPM;
    Published<bool, FanControlManager> hasFans;
    Published<std::int64_t, FanControlManager> fanCount;
    Published<std::vector<FanTelemetry>, FanControlManager> currentFans;
    Published<bool, FanControlManager> isLinked;
    Published<FanCurveConfig, FanControlManager> leftCurve;
    Published<FanCurveConfig, FanControlManager> rightCurve;

    /// The preset that was applied last, `balancedEveryday` at the start; none after an edit.
    Published<std::optional<CurvePreset>, FanControlManager> activePreset;
    Published<double, FanControlManager> evaluatedLeftTargetRPM;
    Published<double, FanControlManager> evaluatedRightTargetRPM;

    /// Makes `profile` current, stores it and applies it; a target is kept in `customRPM` and stored.
    void setProfile(FanProfile profile, std::optional<double> targetRPM = std::nullopt);

    /// Makes `profile` current without storing it, then applies it: for callers that store first.
    void selectProfile(FanProfile profile);

    /// Replaces both curves from a preset, over each fan's own speed range, and switches to `custom`.
    void applyPreset(CurvePreset preset);

    /// Installs an edited curve for fan 0 or 1, for both while linked, and switches to `custom`.
    void updateCurve(std::int64_t fanIndex, const FanCurveConfig& config);

    /// Links or unlinks the two curves; linking copies the left one to the right fan.
    void toggleLinking();

    /// Reads the fan inventory and gives the curves its fans' speed ranges, without storing them. Done once, at
    /// construction; later changes come by `followFans`.
    void refreshHardware();

    /// Takes the fans that a sample has read for the inventory, unless they are the same but for their speeds. A
    /// new fan gives its curve its range, an exchanged one if the curve has the range of the old one: what the
    /// user edited stays. One that is gone for a while is not new when it comes back. Nothing is stored.
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

    /// Evaluates the curves at once for `custom`; does nothing for the other profiles or without fans.
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
    std::array<std::optional<SpeedRange>, 2> knownRanges_;  ///< of the left and the right fan, when last seen
    std::unique_ptr<RunLoopTimer> evalTimer_;
};

}  // namespace kestro
