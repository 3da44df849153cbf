#pragma once

#include "core/platform/script_runner.h"

#include <string>

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

}  // namespace kestro
