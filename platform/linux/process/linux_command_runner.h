#pragma once

#include "core/platform/command_runner.h"
#include "platform/linux/process/process_table.h"

namespace kestro {

/// Emulates the process-status tool, "/bin/ps", from /proc in this process. Launches no other program.
class LinuxCommandRunner final : public CommandRunner {
public:
    explicit LinuxCommandRunner(const std::string& root = "/",
                                ProcessTable::Time time = ProcessTable::ofThisMachine())
        : processes_(root, std::move(time)) {}

    /// For "/bin/ps" the argument "-r" sorts by processor use and "-m" by resident memory; the columns are
    /// always pid, %cpu, %mem, rss and comm.
    std::optional<CommandOutput> run(const std::string& executable,
                                     const std::vector<std::string>& arguments) override;

private:
    ProcessTable processes_;
};

}  // namespace kestro
