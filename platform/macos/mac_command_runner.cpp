#include "platform/macos/mac_command_runner.h"

#include "platform/posix/child_process.h"

namespace kestro {

std::optional<CommandOutput> MacCommandRunner::run(const std::string& executable,
                                                   const std::vector<std::string>& arguments) {
    return runChild(
        {.executable = executable, .arguments = arguments, .keepWaiting = [this] { return !isStopped_; }});
}

}  // namespace kestro
