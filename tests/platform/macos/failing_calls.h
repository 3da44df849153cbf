#pragma once

#include "tests/platform/macos/fakes/fake_mac.h"

#include <functional>

namespace kestro {

/// Expects that the program holds nothing of the system any more and has never released anything wrongly.
void expectNothingHeld(const fakes::FakeMac& mac);

/// Runs `use` a thousand times on a system that `prepare` has set up: without failures, with each function failing
/// that `use` calls and that can fail, one function at a time, and with all of them failing. Expects that the
/// program holds nothing after each time.
void useWithFailingCalls(const std::function<void(fakes::FakeMac&)>& prepare,
                         const std::function<void(fakes::FakeMac&)>& use);

}  // namespace kestro
