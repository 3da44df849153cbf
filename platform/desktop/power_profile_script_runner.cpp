#include "platform/desktop/power_profile_script_runner.h"

#include "core/platform/power_mode_script.h"
#include "platform/desktop/power_profiles.h"

namespace kestro {

void PowerProfileScriptRunner::execute(const std::string& source) {
    if (const auto mode = powerModeOfScript(source)) {
        profiles_.select(static_cast<PowerProfile>(*mode));
    }
}

}  // namespace kestro
