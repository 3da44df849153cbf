#pragma once

#include "core/platform/power_assertions.h"

#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace kestro {

/// The power-management assertions of IOKit. Main thread. The system grants or refuses one at once and revokes
/// none, so the revocation handler is never called. Destroying this object releases every assertion.
class MacPowerAssertions final : public PowerAssertions {
public:
    MacPowerAssertions() = default;
    ~MacPowerAssertions() override;
    MacPowerAssertions(const MacPowerAssertions&) = delete;
    MacPowerAssertions& operator=(const MacPowerAssertions&) = delete;

    std::optional<PowerAssertionID> create(const std::string& type, std::uint32_t level,
                                           const std::string& name) override;
    void release(PowerAssertionID id) override;
    void setRevocationHandler(std::function<void(PowerAssertionID)> handler) override;
    PowerAssertionReport report() const override { return report_; }
    void setReportHandler(std::function<void()> handler) override { reportHandler_ = std::move(handler); }

private:
    void setReport(PowerAssertionReport report);

    std::vector<PowerAssertionID> held_;
    PowerAssertionID newest_ = 0;
    PowerAssertionReport report_;
    std::function<void()> reportHandler_;
};

}  // namespace kestro
