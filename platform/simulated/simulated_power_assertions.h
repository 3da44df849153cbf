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
        const bool isRefused = refusal.strikes();
        if (!isRefused) {
            held_.push_back({++lastID_, type, level, name});
        }
        setReport({isRefused ? State::refused : State::held, isRefused ? Names{} : Names{"Simulated Mac"}});
        return isRefused ? std::nullopt : std::optional(lastID_);
    }

    void release(PowerAssertionID id) override {
        if (std::erase_if(held_, [id](const SimulatedAssertion& assertion) { return assertion.id == id; }) > 0) {
            setReport({});
        }
    }

    void setRevocationHandler(std::function<void(PowerAssertionID)> handler) override {
        revocationHandler_ = std::move(handler);
    }

    PowerAssertionReport report() const override { return report_; }
    void setReportHandler(std::function<void()> handler) override { reportHandler_ = std::move(handler); }

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
        setReport({State::refused, {}});
    }

    /// Simulates what happens to the locks below a granted assertion.
    void setReport(PowerAssertionReport report) {
        report_ = std::move(report);
        if (const auto handler = reportHandler_) {
            handler();
        }
    }

    bool hasRevocationHandler() const { return static_cast<bool>(revocationHandler_); }

private:
    using State = PowerAssertionReport::State;
    using Names = std::vector<std::string>;

    std::vector<SimulatedAssertion> held_;
    PowerAssertionID lastID_ = 0;
    std::function<void(PowerAssertionID)> revocationHandler_;
    PowerAssertionReport report_;
    std::function<void()> reportHandler_;
};

}  // namespace kestro
