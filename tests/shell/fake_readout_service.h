#pragma once

#include "shell/readout_service.h"

#include <optional>
#include <utility>

namespace kestro::test {

/// Keeps the handlers, for tests that call them as another program does.
class FakeReadoutService final : public ReadoutService {
public:
    void publish(ReadoutHandlers published) override { handlers = std::move(published); }
    void withdraw() override { handlers.reset(); }
    void readoutDidUpdate() override { ++updates; }

    std::optional<ReadoutHandlers> handlers;
    int updates = 0;
};

}  // namespace kestro::test
