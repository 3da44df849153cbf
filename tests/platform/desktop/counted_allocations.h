#pragma once

#include <cstdint>

namespace kestro::testing_support {

/// How often this thread has allocated with `new` since it began.
std::uint64_t allocationsOfThisThread();

}  // namespace kestro::testing_support
