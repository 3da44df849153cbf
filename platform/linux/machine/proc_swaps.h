#pragma once

#include "core/platform/system_control.h"

#include <optional>
#include <string_view>

namespace kestro {

/// Sums the devices and files listed in /proc/swaps; zeros if there are none. nullopt: the heading is missing or a
/// line is malformed.
std::optional<SwapUsage> parseSwaps(std::string_view text);

}  // namespace kestro
