#pragma once

#include "core/platform/command_runner.h"

namespace kestro {

class PowerProfiles;

/// Handles "/usr/bin/pmset" "-g" in process, with the machine's power profile, and forwards every other command
/// to `others`. Any background thread; both references outlive it.
class SessionCommandRunner final : public CommandRunner {
public:
    SessionCommandRunner(PowerProfiles& profiles, CommandRunner& others) : profiles_(profiles), others_(others) {}

    std::optional<CommandOutput> run(const std::string& executable,
                                     const std::vector<std::string>& arguments) override;

private:
    PowerProfiles& profiles_;
    CommandRunner& others_;
};

}  // namespace kestro
