#pragma once

#include "core/platform/command_runner.h"
#include "platform/linux/process/process_table.h"

#include <chrono>
#include <cstddef>

namespace kestro {

/// Emulates the process-status tool, "/bin/ps", from /proc in this process, and runs any other program as a child.
/// A child gets an empty standard input and inherits no descriptors.
class LinuxCommandRunner final : public CommandRunner {
public:
    /// Limits on a child's output and run time; a child that exceeds one is killed.
    struct Bounds {
        std::size_t outputBytes = 4 << 20;
        std::chrono::milliseconds time{10000};
    };

    explicit LinuxCommandRunner(const std::string& root = "/") : LinuxCommandRunner(root, Bounds()) {}
    LinuxCommandRunner(const std::string& root, Bounds bounds,
                       ProcessTable::UptimeSource uptime = ProcessTable::bootClock);

    /// For "/bin/ps" the argument "-r" sorts by processor use and "-m" by resident memory; the columns are
    /// always pid, %cpu, %mem, rss and comm.
    std::optional<CommandOutput> run(const std::string& executable,
                                     const std::vector<std::string>& arguments) override;

private:
    ProcessTable processes_;
    const Bounds bounds_;
};

}  // namespace kestro
