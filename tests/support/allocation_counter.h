#pragma once

#include <cstdint>

namespace kestro::test {

/// Calls of `operator new` by this thread so far. A program that asks is linked with counting operators.
std::int64_t allocationsOfThisThread();

}  // namespace kestro::test
