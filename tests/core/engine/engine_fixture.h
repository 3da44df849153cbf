#pragma once

#include "core/settings/user_settings.h"
#include "tests/support/simulated_readers.h"

#include <gtest/gtest.h>

#include <optional>

namespace kestro {

/// A simulated machine with its settings and readers. The engine is created on first use, so that a test can set
/// up the machine first.
class EngineFixture : public testing::Test {
protected:
    TelemetryEngine& engine() {
        if (!engine_) {
            engine_.emplace(mac.platform(), settings, readers.all());
        }
        return *engine_;
    }

    void destroyEngine() { engine_.reset(); }

    SimulatedMac mac;
    UserSettings settings{mac.userDefaults};
    SimulatedReaders readers{mac};

private:
    std::optional<TelemetryEngine> engine_;
};

}  // namespace kestro
