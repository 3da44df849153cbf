#pragma once

#include "core/platform/power_events.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace kestro {

/// Announces changes at a test's request.
class SimulatedPowerEvents final : public PowerEvents {
public:
    std::unique_ptr<PowerEventSource> watch(std::function<void()> handler) override {
        return std::make_unique<Source>(*this, std::move(handler));
    }

    void announce() {
        for (const Source* source : std::vector(sources_)) {
            if (std::ranges::count(sources_, source) > 0) {
                const auto handler = source->handler;  // it may end the watch
                handler();
            }
        }
    }

    bool isWatched() const { return !sources_.empty(); }

private:
    struct Source final : PowerEventSource {
        Source(SimulatedPowerEvents& events, std::function<void()> onChange)
            : owner(events), handler(std::move(onChange)) {
            owner.sources_.push_back(this);
        }
        ~Source() override { std::erase(owner.sources_, this); }

        SimulatedPowerEvents& owner;
        std::function<void()> handler;
    };

    std::vector<const Source*> sources_;
};

}  // namespace kestro
