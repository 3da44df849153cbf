#pragma once

#include "tests/drills/drill.h"

#include <string>

namespace kestro::drills {

/// Starts the program without services, with a system bus that accepts connections and never answers, and with
/// services that accept calls and never answer. Reports a start that takes longer than it
/// may until its item is registered, and returns the times.
std::string measureStarts(DrillReport& report);

}  // namespace kestro::drills
