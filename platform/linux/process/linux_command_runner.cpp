#include "platform/linux/process/linux_command_runner.h"

#include "platform/posix/child_process.h"

#include <algorithm>

namespace kestro {

LinuxCommandRunner::LinuxCommandRunner(const std::string& root, Bounds bounds, ProcessTable::UptimeSource uptime)
    : processes_(root, std::move(uptime)), bounds_(bounds) {}

std::optional<CommandOutput> LinuxCommandRunner::run(const std::string& executable,
                                                     const std::vector<std::string>& arguments) {
    if (executable == "/bin/ps") {
        const bool byMemory = std::ranges::find(arguments, "-m") != arguments.end();
        return CommandOutput{
            processes_.list(byMemory ? ProcessTable::Order::residentMemory : ProcessTable::Order::processor), 0};
    }
    return runChild(executable, arguments, bounds_.outputBytes, bounds_.time);
}

}  // namespace kestro
