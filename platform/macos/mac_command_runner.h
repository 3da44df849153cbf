#pragma once

#include "core/platform/command_runner.h"

#include <atomic>

namespace kestro {

/// Runs programs as children, at most 10 s and 4 MiB of output each. Any background thread.
class MacCommandRunner final : public CommandRunner {
public:
    std::optional<CommandOutput> run(const std::string& executable,
                                     const std::vector<std::string>& arguments) override;

    /// Ends the running programs and those started later, at the end of the process. Any thread.
    void stop() { isStopped_ = true; }

private:
    std::atomic<bool> isStopped_ = false;
};

}  // namespace kestro
