#pragma once

#include "core/platform/script_runner.h"
#include "platform/simulated/simulated_command_runner.h"
#include "platform/simulated/simulated_failure.h"

#include <string_view>
#include <vector>

namespace kestro {

/// Records every script. A script that exactly matches a power-mode switch performs it, unless refused.
class SimulatedScriptRunner final : public ScriptRunner {
public:
    explicit SimulatedScriptRunner(SimulatedCommandRunner& commandRunner) : commandRunner_(commandRunner) {}

    void execute(const std::string& source) override;

    SimulatedFailure refusal;
    std::vector<std::string> sources;

private:
    SimulatedCommandRunner& commandRunner_;
};

}  // namespace kestro
