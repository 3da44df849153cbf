#pragma once

#include "core/platform/command_runner.h"

#include <chrono>
#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace kestro {

/// A program to run and its limits.
struct ChildRequest {
    std::string executable;  ///< absolute path
    std::vector<std::string> arguments;
    std::string input{};  ///< written to its standard input before it starts; at most a page
    std::size_t outputBytes = 4 << 20;
    std::chrono::milliseconds time{10'000};
    std::function<bool()> keepWaiting = [] { return true; };  ///< polled several times a second
};

/// Runs a program to completion and returns its output. It inherits no descriptors and gets a process group of its
/// own. Drains both output pipes concurrently, so that the child never blocks on us. Kills the group when the
/// child prints `outputBytes`, runs longer than `time` or `keepWaiting` returns false; a child that may not be
/// killed, because it has changed its user, is left behind after a second. The exit status of a killed child is
/// 128 plus the signal, and 128 plus SIGKILL where it is unknown. nullopt: it could not be launched. Any thread.
std::optional<CommandOutput> runChild(const ChildRequest& request);

}  // namespace kestro
