#pragma once

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "core/platform/command_runner.h"

namespace kestro {

/// Runs a program to its end and returns what it printed; both of its output pipes are drained side by side,
/// so it never waits for us. A child that prints more than `outputBytes` or runs longer than `time` is killed
/// with its process group. nullopt: it could not be launched. Any thread.
std::optional<CommandOutput> runChild(const std::string& executable, const std::vector<std::string>& arguments,
                                      std::size_t outputBytes, std::chrono::milliseconds time);

}  // namespace kestro
