#pragma once

#include <cstdint>

namespace kestro {

/// Calls of `operator new` by this thread so far. The whole test program is linked with the counting operator.
std::int64_t allocationsOfThisThread();

}  // namespace kestro
