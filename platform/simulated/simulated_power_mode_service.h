#pragma once

#include "core/platform/power_mode_service.h"

#include <utility>

namespace kestro {

/// Offers every mode, unless a test says otherwise.
class SimulatedPowerModeService final : public PowerModeService {
public:
    PowerModeConditions conditions() const override { return conditions_; }
    void setConditionsHandler(std::function<void()> handler) override { handler_ = std::move(handler); }

    void set(PowerModeConditions conditions) {
        conditions_ = conditions;
        if (handler_) {
            handler_();
        }
    }

private:
    PowerModeConditions conditions_;
    std::function<void()> handler_;
};

}  // namespace kestro
