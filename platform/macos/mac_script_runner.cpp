#include "platform/macos/mac_script_runner.h"

#include "core/platform/power_mode_script.h"
#include "platform/macos/mac_power_mode_service.h"
#include "platform/posix/child_process.h"

#include <chrono>
#include <optional>

namespace kestro {

namespace {

using Failure = PowerModeConditions::Failure;

/// The number of the error "user cancelled", at the end of the interpreter's message.
constexpr auto cancelled = "(-128)";

std::optional<Failure> failureOf(const std::optional<CommandOutput>& result) {
    if (!result) {
        return Failure::noService;
    }
    if (result->exitStatus == 0) {
        return std::nullopt;
    }
    return result->standardOutput.find(cancelled) != std::string::npos ? Failure::denied : Failure::rejected;
}

}  // namespace

void MacScriptRunner::execute(const std::string& source) {
    // With errors on standard output.
    const auto result = runChild({.executable = interpreter_,
                                  .arguments = {"-s", "o", "-e", source},
                                  .time = std::chrono::hours(1),
                                  .keepWaiting = [this] { return !isStopped_; }});
    const auto mode = powerModeOfScript(source);
    if (!mode || isStopped_) {
        return;
    }
    const auto failure = failureOf(result);
    powerModes_.report(failure ? std::optional(PowerModeConditions::FailedSwitch{*mode, *failure}) : std::nullopt);
}

}  // namespace kestro
