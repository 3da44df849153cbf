#pragma once

#include "tests/core/engine/engine_fixture.h"

#include <chrono>
#include <string>
#include <utility>
#include <vector>

namespace kestro {

/// An engine whose published properties are recorded.
class TelemetryEngineTest : public EngineFixture {
protected:
    using Periods = std::vector<std::chrono::milliseconds>;

    /// Records the name of every property as it is published.
    template <typename Property>
    void watch(const Property& property, std::string name) {
        subscriptions_.push_back(
            property.subscribe([this, name = std::move(name)](const auto&) { published.push_back(name); }));
    }

    void watchEverything() {
        watch(engine().fans, "fans");
        watch(engine().thermals, "thermals");
        watch(engine().cpu, "cpu");
        watch(engine().memory, "memory");
        watch(engine().disk, "disk");
        watch(engine().network, "network");
        watch(engine().power, "power");
        watch(engine().topProcesses, "topProcesses");
        watch(engine().cpuHistory, "cpuHistory");
        watch(engine().netDownHistory, "netDownHistory");
        watch(engine().netUpHistory, "netUpHistory");
    }

    Periods periodsWith(PollingProfile profile, bool active) {
        settings.pollingProfile.set(profile);
        engine().setUIActive(active);
        engine().restartTimer();
        return mac.runLoop.timerPeriods();
    }

    std::string uptimeAfter(std::chrono::seconds duration) {
        using namespace std::chrono_literals;
        mac.systemControl.boot = TimeValue{1'000'000, 999'999};
        mac.clock.setWall(WallTime(1'000'000s) + duration);
        const std::string text = engine().uptimeString();
        destroyEngine();
        return text;
    }

    std::vector<std::string> published;

private:
    std::vector<Subscription> subscriptions_;
};

}  // namespace kestro
