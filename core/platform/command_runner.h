#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace kestro {

/// What a program wrote to standard output, byte for byte. Standard error is drained and dropped.
struct CommandOutput {
    std::string standardOutput;
    std::int32_t exitStatus = 0;
};

/// Runs a program and waits for it. Any background thread; concurrent calls are safe.
class CommandRunner {
public:
    virtual ~CommandRunner() = default;

    /// nullopt: the program could not be launched. The platform sets limits on output and run time; a program that
    /// exceeds one is stopped, and its output so far is returned.
    virtual std::optional<CommandOutput> run(const std::string& executable,
                                             const std::vector<std::string>& arguments) = 0;
};

}  // namespace kestro
