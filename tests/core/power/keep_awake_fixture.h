#pragma once

#include "core/power/keep_awake_manager.h"
#include "core/settings/user_settings.h"
#include "platform/simulated/simulated_mac.h"

#include <chrono>
#include <cstddef>
#include <memory>
#include <string>

namespace kestro {

/// A manager on a simulated machine with a new user's preferences.
struct KeepAwakeFixture {
    SimulatedMac mac;
    UserSettings settings{mac.userDefaults};
    std::unique_ptr<KeepAwakeManager> made = std::make_unique<KeepAwakeManager>(mac.platform(), settings);
    KeepAwakeManager& manager = *made;

    std::size_t timers() const { return mac.runLoop.timerPeriods().size(); }

    /// The text for the remaining time, one tick after `elapsed` of a four-hour period on the wall clock.
    std::string remainingAfter(std::chrono::milliseconds elapsed) {
        manager.activate(KeepAwakeDuration::hours4);
        mac.clock.setWall(mac.clock.wallNow() + elapsed);
        mac.advance(std::chrono::seconds(1));
        return manager.formattedRemainingTime();
    }
};

}  // namespace kestro
