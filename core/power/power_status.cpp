#include "core/power/power_status.h"

#include "core/engine/telemetry_engine.h"
#include "core/platform/platform.h"
#include "core/platform/power_assertions.h"
#include "core/platform/power_mode_service.h"
#include "core/power/keep_awake_manager.h"
#include "core/power/power_mode_manager.h"
#include "core/settings/user_settings.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <utility>

namespace kestro {

namespace {

using ReportState = PowerAssertionReport::State;
using Failure = PowerModeConditions::Failure;

std::string failureNote(Failure reason) {
    switch (reason) {
        case Failure::noService:
            return "Nothing on this machine can switch to this mode.";
        case Failure::denied:
            return "This mode was not switched to, because the administrator did not consent.";
        case Failure::rejected:
            return "This mode was not switched to, because the power profiles service refused.";
        case Failure::reverted:
            break;
    }
    return "The power profiles service accepted this mode, but did not keep it.";
}

std::string modeNote(SystemPowerMode mode, SystemPowerMode current, const PowerModeConditions& conditions) {
    const int number = toolValue(mode).front() - '0';
    if (!conditions.isOffered.at(static_cast<std::size_t>(number))) {
        return "The power profiles service does not offer this mode on this machine.";
    }
    const auto& failed = conditions.failedSwitch;
    return failed && failed->mode == number && mode != current ? failureNote(failed->reason) : std::string();
}

}  // namespace

PowerStatus::PowerStatus(const Platform& platform, UserSettings& settings, TelemetryEngine& engine,
                         KeepAwakeManager& keepAwakeManager, PowerModeManager& powerModeManager)
    : platform_(platform),
      settings_(settings),
      engine_(engine),
      keepAwakeManager_(keepAwakeManager),
      powerModeManager_(powerModeManager) {
    platform_.powerAssertions.setReportHandler([this] { updateKeepAwake(); });
    platform_.powerModeService.setConditionsHandler([this] { updatePowerModes(); });
    subscriptions_.push_back(keepAwakeManager_.isActive.subscribe([this](bool) { activityChanged(); }));
    subscriptions_.push_back(
        keepAwakeManager_.targetMode.subscribe([this](KeepAwakeTarget) { updateKeepAwake(); }));
    subscriptions_.push_back(settings_.keepAwakeAutoDisableOnBattery.subscribe([this](bool) { watchBattery(); }));
    subscriptions_.push_back(
        powerModeManager_.currentMode.subscribe([this](SystemPowerMode) { updatePowerModes(); }));
    activityChanged();
    updatePowerModes();
}

PowerStatus::~PowerStatus() {
    platform_.powerAssertions.setReportHandler({});
    platform_.powerModeService.setConditionsHandler({});
}

PowerStatus& PowerStatus::shared() {
    // Never destroyed: views may still be subscribed while the process ends.
    static auto* const status =
        new PowerStatus(Platform::current(), UserSettings::shared(), TelemetryEngine::shared(),
                        KeepAwakeManager::shared(), PowerModeManager::shared());
    return *status;
}

void PowerStatus::activityChanged() {
    batteryNote_ = keepAwakeManager_.isActive.get() ? std::string() : offNote();
    watchBattery();
    updateKeepAwake();
}

void PowerStatus::watchBattery() {
    engine_.setWatchesPower(keepAwakeManager_.isActive.get() && settings_.keepAwakeAutoDisableOnBattery.get());
}

void PowerStatus::updateKeepAwake() {
    auto status = keepAwakeStatus();
    if (status != keepAwake.get()) {
        keepAwake.set(std::move(status));
    }
}

void PowerStatus::updatePowerModes() {
    const auto conditions = platform_.powerModeService.conditions();
    PowerModeNotes notes;
    for (const SystemPowerMode mode : allCases<SystemPowerMode>()) {
        notes.at(static_cast<std::size_t>(mode)) = modeNote(mode, powerModeManager_.currentMode.get(), conditions);
    }
    if (notes != powerModeNotes.get()) {
        powerModeNotes.set(std::move(notes));
    }
}

KeepAwakeStatus PowerStatus::keepAwakeStatus() const {
    const auto report = platform_.powerAssertions.report();
    const bool isActive = keepAwakeManager_.isActive.get();
    if (!isActive && report.state == ReportState::refused) {
        return {false, "Keep-awake is off because no service of this desktop grants the lock."};
    }
    if (!isActive) {
        return {false, batteryNote_};
    }
    switch (report.state) {
        case ReportState::held:
            return {true, fmt::format("{} · held by {}", rawValue(keepAwakeManager_.targetMode.get()),
                                      fmt::join(report.holders, ", "))};
        case ReportState::pending:
            return {false, "Not held: the desktop has not granted the lock yet."};
        case ReportState::lost:
            return {false, "Not held: the lock was lost, and will be requested again."};
        case ReportState::refused:
        case ReportState::none:
            break;
    }
    return {false, "Not held: no service of this desktop grants the lock."};
}

/// Why keep-awake has just ended, if the battery is the reason.
std::string PowerStatus::offNote() const {
    const auto& power = engine_.power.get();
    const double threshold = settings_.keepAwakeBatteryThreshold.get();
    const bool isLow =
        power.hasBattery && !power.isCharging && !power.isPluggedIn && power.percentage <= threshold;
    if (!isLow || !settings_.keepAwakeAutoDisableOnBattery.get()) {
        return {};
    }
    return fmt::format("Keep-awake is off because the battery is at {:.0f} %, and its cut-off is {:.0f} %.",
                       power.percentage, threshold);
}

}  // namespace kestro
