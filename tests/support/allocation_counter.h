#pragma once

#include <cstdint>

namespace kestro::test {

/// Calls of `operator new` by this thread so far. Programs that use this link the counting operators.
std::int64_t allocationsOfThisThread();

}  // namespace kestro::test
