#pragma once

#include "core/base/lifetime.h"
#include "core/platform/power_mode_service.h"
#include "core/platform/run_loop.h"

#include <functional>
#include <memory>
#include <optional>
#include <utility>

namespace kestro {

/// Remembers what became of the last switch of the power mode. macOS does not say which modes a machine has, so
/// all are offered. Main thread, except as noted; the run loop outlives it.
class MacPowerModeService final : public PowerModeService {
public:
    explicit MacPowerModeService(RunLoop& runLoop) : runLoop_(runLoop), watch_(lifetime_.watch()) {}

    PowerModeConditions conditions() const override { return conditions_; }
    void setConditionsHandler(std::function<void()> handler) override { handler_ = std::move(handler); }

    /// Reports a finished switch; nullopt: it succeeded. Any thread, while this object exists.
    void report(std::optional<PowerModeConditions::FailedSwitch> failure) {
        runLoop_.post([this, watch = watch_, failure] {
            if (!watch.expired()) {
                conditions_.failedSwitch = failure;
                if (const auto handler = handler_) {
                    handler();
                }
            }
        });
    }

private:
    RunLoop& runLoop_;
    PowerModeConditions conditions_;
    std::function<void()> handler_;
    Lifetime lifetime_;
    const std::weak_ptr<const void> watch_;
};

}  // namespace kestro
