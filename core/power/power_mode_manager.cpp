#include "core/power/power_mode_manager.h"

#include "core/platform/command_runner.h"
#include "core/platform/platform.h"
#include "core/platform/power_mode_script.h"
#include "core/platform/run_loop.h"
#include "core/platform/script_runner.h"
#include "core/power/power_mode_report.h"

#include <chrono>
#include <memory>
#include <string>

namespace kestro {

namespace {

constexpr auto refreshPeriod = std::chrono::seconds(5);

SystemPowerMode readCurrentMode(CommandRunner& runner) {
    const auto output = runner.run("/usr/bin/pmset", {"-g"});
    return output ? powerModeOfReport(output->standardOutput) : SystemPowerMode::balanced;
}

}  // namespace

PowerModeManager::PowerModeManager(const Platform& platform)
    : currentMode(SystemPowerMode::balanced), supportsHighPowerMode(true), platform_(platform) {
    refreshPowerMode();
    timer_ = platform_.runLoop.scheduleRepeating(refreshPeriod, [this] { refreshPowerMode(); });
}

PowerModeManager::~PowerModeManager() = default;

PowerModeManager& PowerModeManager::shared() {
    // Never destroyed: views may still be subscribed while the process ends.
    static auto* const manager = new PowerModeManager(Platform::current());
    return *manager;
}

void PowerModeManager::setPowerMode(SystemPowerMode mode) {
    auto* const platform = &platform_;
    platform->runLoop.runInBackground(TaskPriority::userInitiated,
                                      [this, platform, watch = lifetime_.watch(), mode] {
                                          platform->scriptRunner.execute(powerModeScript(toolValue(mode)));
                                          platform->runLoop.post([this, watch] {
                                              if (!watch.expired()) {
                                                  refreshPowerMode();
                                              }
                                          });
                                      });
}

void PowerModeManager::refreshPowerMode() {
    auto* const platform = &platform_;
    platform->runLoop.runInBackground(TaskPriority::utility, [this, platform, watch = lifetime_.watch()] {
        const auto mode = readCurrentMode(platform->commandRunner);
        platform->runLoop.post([this, watch, mode] {
            if (!watch.expired()) {
                currentMode.set(mode);
            }
        });
    });
}

}  // namespace kestro
