#include "core/cooling/fan_control_manager.h"

#include "core/cooling/driving_temperature.h"
#include "core/engine/telemetry_engine.h"
#include "core/platform/platform.h"
#include "core/platform/run_loop.h"
#include "core/settings/user_settings.h"
#include "core/telemetry/smc_reader.h"

#include <chrono>
#include <cstddef>

namespace kestro {

namespace {

struct SpeedRange {
    double minRPM;
    double maxRPM;
};

// The ranges that a preset gets without a fan to ask; deliberately not those of the default curves.
constexpr SpeedRange leftFallback{1200.0, 7300.0};
constexpr SpeedRange rightFallback{1300.0, 7800.0};

SpeedRange rangeOf(const std::vector<FanTelemetry>& fans, std::size_t index, SpeedRange fallback) {
    return index < fans.size() ? SpeedRange{fans[index].minRPM, fans[index].maxRPM} : fallback;
}

FanCurveConfig withRange(FanCurveConfig curve, SpeedRange range) {
    curve.minRPM = range.minRPM;
    curve.maxRPM = range.maxRPM;
    return curve;
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
    const FanCurveConfig edited = config;  // the caller's may be one of our own curves
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
    const auto fans = smc_.readFans();
    currentFans.set(fans);
    fanCount.set(static_cast<std::int64_t>(fans.size()));
    hasFans.set(!fans.empty());
    // Published only: the stored curves keep the ranges that they were made with.
    if (!fans.empty()) {
        leftCurve.set(withRange(leftCurve.get(), rangeOf(fans, 0, leftFallback)));
    }
    if (fans.size() >= 2) {
        rightCurve.set(withRange(rightCurve.get(), rangeOf(fans, 1, rightFallback)));
    }
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
        return;  // the next firing of the timer picks the new curves up
    }
    currentProfile.set(FanProfile::custom);
    settings_.fanProfile.set(FanProfile::custom);
    evaluateAndApplyCurves();
}

double FanControlManager::resolveSensorTemp(SensorSource source) const {
    return drivingTemperature(source, engine_.thermals.get());
}

}  // namespace kestro
