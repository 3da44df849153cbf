#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace kestro {

/// The bytes from where an open file stands to its end, at most the first `limit`. Goes on after an interrupted
/// call. nullopt: the file cannot be read; errno says why. Any thread.
std::optional<std::string> readAtMost(int descriptor, std::size_t limit);

}  // namespace kestro
