#pragma once

#include "core/platform/power_assertions.h"
#include "platform/simulated/simulated_failure.h"

#include <vector>

namespace kestro {

/// One assertion as requested.
struct SimulatedAssertion {
    PowerAssertionID id = 0;
    std::string type;
    std::uint32_t level = 0;
    std::string name;
};

/// Grants assertions, counts them, and revokes them at a test's request.
class SimulatedPowerAssertions final : public PowerAssertions {
public:
    std::optional<PowerAssertionID> create(const std::string& type, std::uint32_t level,
                                           const std::string& name) override {
        if (refusal.strikes()) {
            return std::nullopt;
        }
        held_.push_back({++lastID_, type, level, name});
        return lastID_;
    }

    void release(PowerAssertionID id) override {
        std::erase_if(held_, [id](const SimulatedAssertion& assertion) { return assertion.id == id; });
    }

    void setRevocationHandler(std::function<void(PowerAssertionID)> handler) override {
        revocationHandler_ = std::move(handler);
    }

    SimulatedFailure refusal;

    const std::vector<SimulatedAssertion>& held() const { return held_; }
    PowerAssertionID created() const { return lastID_; }  ///< number granted so far; also the newest ID

    /// Simulates the system revoking an assertion; does nothing if it is not held.
    void revoke(PowerAssertionID id) {
        if (std::erase_if(held_, [id](const SimulatedAssertion& assertion) { return assertion.id == id; }) == 0) {
            return;
        }
        if (const auto handler = revocationHandler_) {
            handler(id);
        }
    }

    bool hasRevocationHandler() const { return static_cast<bool>(revocationHandler_); }

private:
    std::vector<SimulatedAssertion> held_;
    PowerAssertionID lastID_ = 0;
    std::function<void(PowerAssertionID)> revocationHandler_;
};

}  // namespace kestro
