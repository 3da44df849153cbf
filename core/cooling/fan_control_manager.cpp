#include "core/cooling/fan_control_manager.h"

#include "core/cooling/driving_temperature.h"
#include "core/engine/telemetry_engine.h"
#include "core/platform/platform.h"
#include "core/platform/run_loop.h"
#include "core/settings/user_settings.h"
#include "core/telemetry/smc_reader.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace kestro {

namespace {

bool areTheSame(const FanTelemetry& one, const FanTelemetry& other) {
    return one.name == other.name && one.minRPM == other.minRPM && one.maxRPM == other.maxRPM;
}

}  // namespace

FanControlManager::FanControlManager(const Platform& platform, UserSettings& settings, TelemetryEngine& engine,
                                     SMCReader& smc)
    : currentProfile(FanProfile::normal),
      customRPM(settings.customFanRPM.get()),
      hasFans(true),
      fanCount(0),
      isLinked(settings.isFansLinked.get()),
      leftCurve(settings.leftFanCurve.get()),
      rightCurve(settings.rightFanCurve.get()),
      activePreset(CurvePreset::balancedEveryday),
      evaluatedLeftTargetRPM(1250.0),
      evaluatedRightTargetRPM(1350.0),
      platform_(platform),
      settings_(settings),
      engine_(engine),
      smc_(smc) {
    refreshHardware();
    currentProfile.set(settings_.fanProfile.get());
    startCurveEvaluator();
}

FanControlManager::~FanControlManager() = default;

FanControlManager& FanControlManager::shared() {
    // Never destroyed: views may still be subscribed while the process ends.
    static auto* const manager = new FanControlManager(Platform::current(), UserSettings::shared(),
                                                       TelemetryEngine::shared(), SMCReader::shared());
    return *manager;
}

void FanControlManager::setProfile(FanProfile profile, std::optional<double> targetRPM) {
    currentProfile.set(profile);
    settings_.fanProfile.set(profile);
    if (targetRPM) {
        customRPM.set(*targetRPM);
        settings_.customFanRPM.set(*targetRPM);
    }
    applyProfile(profile);
}

void FanControlManager::selectProfile(FanProfile profile) {
    currentProfile.set(profile);
    applyProfile(profile);
}

void FanControlManager::applyProfile(FanProfile profile) {
    if (profile == FanProfile::custom) {
        evaluateAndApplyCurves();
    }
}

void FanControlManager::applyPreset(CurvePreset preset) {
    // Ranges for a missing fan; deliberately different from those of the default curves.
    constexpr SpeedRange leftFallback{1200.0, 7300.0};
    constexpr SpeedRange rightFallback{1300.0, 7800.0};
    activePreset.set(preset);
    const auto left = rangeOf(currentFans.get(), 0, leftFallback);
    const auto right = rangeOf(currentFans.get(), 1, rightFallback);
    leftCurve.set(applyTo(preset, left.minRPM, left.maxRPM));
    rightCurve.set(applyTo(preset, right.minRPM, right.maxRPM));
    settings_.leftFanCurve.set(leftCurve.get());
    settings_.rightFanCurve.set(rightCurve.get());
    engageCustom();
}

void FanControlManager::updateCurve(std::int64_t fanIndex, const FanCurveConfig& config) {
    const FanCurveConfig edited = config;  // `config` may alias one of our own curves
    activePreset.set(std::nullopt);
    if (fanIndex == 0 || isLinked.get()) {
        leftCurve.set(edited);
        settings_.leftFanCurve.set(edited);
    }
    if (fanIndex == 1 || isLinked.get()) {
        const auto right = withRange(edited, rangeOf(currentFans.get(), 1, {edited.minRPM, edited.maxRPM}));
        rightCurve.set(right);
        settings_.rightFanCurve.set(right);
    }
    engageCustom();
}

void FanControlManager::toggleLinking() {
    isLinked.set(!isLinked.get());
    settings_.isFansLinked.set(isLinked.get());
    if (isLinked.get()) {
        updateCurve(1, leftCurve.get());
    }
}

void FanControlManager::refreshHardware() {
    takeInventory(smc_.readFans());
    knownRanges_ = {};
    followRange(leftCurve, 0);
    followRange(rightCurve, 1);
}

void FanControlManager::followFans(const std::vector<FanTelemetry>& fans) {
    if (std::ranges::equal(fans, currentFans.get(), areTheSame)) {
        return;
    }
    takeInventory(fans);
    followRange(leftCurve, 0);
    followRange(rightCurve, 1);
}

void FanControlManager::takeInventory(const std::vector<FanTelemetry>& fans) {
    currentFans.set(fans);
    fanCount.set(static_cast<std::int64_t>(fans.size()));
    hasFans.set(!fans.empty());
}

void FanControlManager::followRange(Curve& curve, std::size_t index) {
    const auto& fans = currentFans.get();
    if (index >= fans.size()) {
        return;
    }
    const SpeedRange range{fans[index].minRPM, fans[index].maxRPM};
    const auto known = std::exchange(knownRanges_[index], range);
    if (!known || (*known != range && SpeedRange{curve.get().minRPM, curve.get().maxRPM} == *known)) {
        curve.set(withRange(curve.get(), range));
    }
}

FanControlManager::SpeedRange FanControlManager::rangeOf(const std::vector<FanTelemetry>& fans, std::size_t index,
                                                         SpeedRange fallback) {
    return index < fans.size() ? SpeedRange{fans[index].minRPM, fans[index].maxRPM} : fallback;
}

FanCurveConfig FanControlManager::withRange(FanCurveConfig curve, SpeedRange range) {
    curve.minRPM = range.minRPM;
    curve.maxRPM = range.maxRPM;
    return curve;
}

void FanControlManager::startCurveEvaluator() {
    evalTimer_ = platform_.runLoop.scheduleRepeating(std::chrono::seconds(1), [this] {
        if (currentProfile.get() == FanProfile::custom) {
            evaluateAndApplyCurves();
        }
    });
}

void FanControlManager::evaluateAndApplyCurves() {
    if (!hasFans.get()) {
        return;
    }
    const double leftTemperature = resolveSensorTemp(leftCurve.get().sensorSource);
    evaluatedLeftTargetRPM.set(leftCurve.get().evaluateRPM(leftTemperature));
    const double rightTemperature = resolveSensorTemp(rightCurve.get().sensorSource);
    evaluatedRightTargetRPM.set(rightCurve.get().evaluateRPM(rightTemperature));
}

void FanControlManager::engageCustom() {
    if (currentProfile.get() == FanProfile::custom) {
        return;  // the next timer tick picks up the new curves
    }
    currentProfile.set(FanProfile::custom);
    settings_.fanProfile.set(FanProfile::custom);
    evaluateAndApplyCurves();
}

double FanControlManager::resolveSensorTemp(SensorSource source) const {
    return drivingTemperature(source, engine_.thermals.get());
}

}  // namespace kestro
