#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace kestro {

/// Reads an open file from its current position to the end, at most `limit` bytes. Retries interrupted calls.
/// nullopt: the file cannot be read; see errno. Any thread.
std::optional<std::string> readAtMost(int descriptor, std::size_t limit);

}  // namespace kestro
