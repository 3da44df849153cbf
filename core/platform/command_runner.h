#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace kestro {

/// What a program printed on its standard output, byte for byte. Standard error is drained and dropped.
struct CommandOutput {
    std::string standardOutput;
    std::int32_t exitStatus = 0;
};

/// Runs a program and waits for it. Any background thread; concurrent calls are safe.
class CommandRunner {
public:
    virtual ~CommandRunner() = default;

    /// nullopt: the program could not be launched. A program that prints too much or never ends is stopped
    /// after a bound that the platform sets; what it printed until then is returned.
    virtual std::optional<CommandOutput> run(const std::string& executable,
                                             const std::vector<std::string>& arguments) = 0;
};

}  // namespace kestro
