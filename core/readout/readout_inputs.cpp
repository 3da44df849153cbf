#include "core/readout/readout_inputs.h"

#include "core/cooling/fan_control_manager.h"
#include "core/engine/telemetry_engine.h"
#include "core/power/keep_awake_manager.h"
#include "core/power/power_mode_manager.h"
#include "core/settings/user_settings.h"

namespace kestro {

namespace {

/// Without a total there is no share to show.
template <typename Record>
const Record* withSize(const Record* record) {
    return record && record->totalBytes > 0 ? record : nullptr;
}

}  // namespace

ReadoutInputs readoutInputs(const TelemetryEngine& engine, const UserSettings& settings,
                            const FanControlManager& fanManager, const KeepAwakeManager& keepAwake,
                            const PowerModeManager& powerManager) {
    const auto sampled = [&engine](TelemetrySource source, const auto& property) {
        return engine.hasSampled(source) ? &property.get() : nullptr;
    };
    ReadoutInputs inputs;
    inputs.cpu = engine.measured().load ? &engine.cpu.get() : nullptr;
    inputs.memory = withSize(sampled(TelemetrySource::memory, engine.memory));
    inputs.fans = engine.fans.get();
    inputs.thermal = sampled(TelemetrySource::thermals, engine.thermals);
    inputs.network = engine.measured().rates ? &engine.network.get() : nullptr;
    inputs.power = sampled(TelemetrySource::power, engine.power);
    inputs.disk = withSize(sampled(TelemetrySource::disk, engine.disk));
    inputs.fanProfile = fanManager.currentProfile.get();
    inputs.powerMode = powerManager.currentMode.get();
    inputs.isKeepAwakeActive = keepAwake.isActive.get();
    inputs.keepAwakeRemainingSeconds = keepAwake.remainingSeconds.get();
    inputs.showLabels = settings.showMenubarLabels.get();
    return inputs;
}

}  // namespace kestro
