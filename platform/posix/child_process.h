#pragma once

#include "core/platform/command_runner.h"

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace kestro {

/// Runs a program to completion and returns its output. Drains both output pipes concurrently, so that the child
/// never blocks on us. Kills a child that prints more than `outputBytes` or runs longer than `time`, along with
/// its process group. nullopt: it could not be launched. Any thread.
std::optional<CommandOutput> runChild(const std::string& executable, const std::vector<std::string>& arguments,
                                      std::size_t outputBytes, std::chrono::milliseconds time);

}  // namespace kestro
