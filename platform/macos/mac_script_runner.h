#pragma once

#include "core/platform/script_runner.h"

#include <atomic>
#include <string>
#include <utility>

namespace kestro {

class MacPowerModeService;

/// Runs scripts with osascript(1), as a child. In this process a script would have to run on the main thread,
/// which would stop for as long as the system asks for the administrator's password; the child asks in its own
/// name and waits for the user by itself. Reports switches of the power mode. Any background thread.
class MacScriptRunner final : public ScriptRunner {
public:
    /// `interpreter` is the path of osascript. The service outlives this object.
    explicit MacScriptRunner(MacPowerModeService& powerModes, std::string interpreter = "/usr/bin/osascript")
        : powerModes_(powerModes), interpreter_(std::move(interpreter)) {}

    /// Ends the script after an hour without an answer.
    void execute(const std::string& source) override;

    /// Ends the running script, with its question to the user, at the end of the process. Any thread.
    void stop() { isStopped_ = true; }

private:
    MacPowerModeService& powerModes_;
    const std::string interpreter_;
    std::atomic<bool> isStopped_ = false;
};

}  // namespace kestro
