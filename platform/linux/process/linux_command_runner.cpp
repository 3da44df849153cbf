#include "platform/linux/process/linux_command_runner.h"

#include <algorithm>

namespace kestro {

std::optional<CommandOutput> LinuxCommandRunner::run(const std::string& executable,
                                                     const std::vector<std::string>& arguments) {
    if (executable != "/bin/ps") {
        return std::nullopt;
    }
    const bool byMemory = std::ranges::find(arguments, "-m") != arguments.end();
    return CommandOutput{
        processes_.list(byMemory ? ProcessTable::Order::residentMemory : ProcessTable::Order::processor), 0};
}

}  // namespace kestro
