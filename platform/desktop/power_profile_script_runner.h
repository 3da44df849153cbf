#pragma once

#include "core/platform/script_runner.h"
#include "platform/desktop/power_profile.h"

#include <optional>
#include <string_view>

namespace kestro {

class PowerProfiles;

/// Runs the one script that switches the power mode; any other text is ignored. The service or pkexec asks for
/// the administrator's consent. Any background thread.
class PowerProfileScriptRunner final : public ScriptRunner {
public:
    explicit PowerProfileScriptRunner(PowerProfiles& profiles) : profiles_(profiles) {}

    void execute(const std::string& source) override;

private:
    PowerProfiles& profiles_;
};

/// The profile that the script text requests; nullopt unless the text is, byte for byte, `do shell script "pmset
/// -a powermode N" with administrator privileges` with N being 0, 1 or 2.
std::optional<PowerProfile> profileOfScript(std::string_view source);

}  // namespace kestro
