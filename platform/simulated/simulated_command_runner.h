#pragma once

#include "core/platform/command_runner.h"
#include "platform/simulated/simulated_failure.h"
#include "platform/simulated/simulated_pattern.h"

#include <map>

namespace kestro {

/// One row of the process tool's output.
struct SimulatedProcess {
    std::int32_t pid = 0;
    double cpuPercent = 0;
    std::int64_t residentKiB = 0;
    std::string command;
};

/// One executed program.
struct SimulatedCommandCall {
    std::string executable;
    std::vector<std::string> arguments;
};

/// Emulates "/bin/ps" from a list of processes and "/usr/bin/pmset" from a power mode, in the tools' own output
/// format, or returns fixed text for any program.
class SimulatedCommandRunner final : public CommandRunner {
public:
    explicit SimulatedCommandRunner(const SimulatedPattern& pattern);

    std::optional<CommandOutput> run(const std::string& executable,
                                     const std::vector<std::string>& arguments) override;

    SimulatedFailure failure;
    std::map<std::string, std::string> outputs;  ///< fixed standard output by executable; takes precedence
    std::vector<SimulatedProcess> processes;
    std::int64_t powerMode = 0;  ///< the tool's number: 0 automatic, 1 low, 2 high

    const std::vector<SimulatedCommandCall>& calls() const { return calls_; }

    /// For runs so long that the calls would fill the memory.
    void forgetCalls() { calls_.clear(); }

private:
    std::string processList(bool sortedByMemory) const;
    std::string powerReport() const;

    const SimulatedPattern& pattern_;
    std::vector<SimulatedCommandCall> calls_;
};

}  // namespace kestro
