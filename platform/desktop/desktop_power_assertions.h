#pragma once

#include "core/platform/power_assertions.h"
#include "platform/desktop/lock_set.h"

#include <QObject>
#include <QString>

#include <chrono>
#include <map>
#include <memory>

namespace kestro {

/// Power assertions through the mechanisms of the desktop: a LockSet each.
///
/// `create` sends its requests at once and waits up to a bound for the first lock, without running the event loop.
/// Every service refused, or there is none: nullopt. No reply in time: the assertion counts as granted, and the
/// revocation handler is called if every service refuses in the end. When the last lock of an assertion is lost,
/// the assertion stays and the report says so, until a service grants a new one. Main thread, after
/// the application object.
class DesktopPowerAssertions final : public PowerAssertions {
public:
    /// The longest that `create` blocks; the rest of its 50 ms is for sending.
    static constexpr std::chrono::milliseconds defaultBound{45};

    /// `desktop` is the value of XDG_CURRENT_DESKTOP.
    explicit DesktopPowerAssertions(LockServices& services, QString desktop = {},
                                    std::chrono::milliseconds bound = defaultBound);

    /// Releases all remaining assertions.
    ~DesktopPowerAssertions() override;

    std::optional<PowerAssertionID> create(const std::string& type, std::uint32_t level,
                                           const std::string& name) override;
    void release(PowerAssertionID id) override;
    void setRevocationHandler(std::function<void(PowerAssertionID)> handler) override;
    PowerAssertionReport report() const override;
    void setReportHandler(std::function<void()> handler) override;

private:
    std::unique_ptr<LockSet> waitForSet(PowerAssertionID id, const LockWish& wish);
    void setChanged(PowerAssertionID id);
    void revoke(PowerAssertionID id);
    void announce() const;

    LockServices& services_;
    const QString desktop_;
    const std::chrono::milliseconds bound_;
    std::function<void(PowerAssertionID)> revocationHandler_;
    std::function<void()> reportHandler_;
    std::map<PowerAssertionID, std::unique_ptr<LockSet>> sets_;
    PowerAssertionID lastID_ = 0;
    bool isRefused_ = false;
    QObject context_;
};

}  // namespace kestro
