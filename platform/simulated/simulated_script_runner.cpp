#include "platform/simulated/simulated_script_runner.h"

#include "core/platform/power_mode_script.h"

namespace kestro {

void SimulatedScriptRunner::execute(const std::string& source) {
    sources.push_back(source);
    if (refusal.strikes()) {
        return;
    }
    if (const auto mode = powerModeOfScript(source)) {
        commandRunner_.powerMode = *mode;
    }
}

}  // namespace kestro
