#pragma once

#include "core/platform/system_control.h"

#include <optional>
#include <string_view>

namespace kestro {

/// The sum over the devices and files that /proc/swaps lists; zeros for none. nullopt: the text has no heading
/// of that file or a line is malformed.
std::optional<SwapUsage> parseSwaps(std::string_view text);

}  // namespace kestro
