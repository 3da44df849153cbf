#include "platform/desktop/desktop_power_assertions.h"

#include <algorithm>
#include <thread>
#include <utility>

namespace kestro {

namespace {

constexpr auto displayType = "PreventUserIdleDisplaySleep";
constexpr auto systemType = "PreventUserIdleSystemSleep";
constexpr std::uint32_t levelOn = 255;

/// Too short to be noticed, long enough that polling costs nothing.
constexpr std::chrono::milliseconds pollInterval(1);

PowerAssertionReport::State reportState(LockSet::State state) {
    switch (state) {
        case LockSet::State::asking:
            return PowerAssertionReport::State::pending;
        case LockSet::State::held:
            return PowerAssertionReport::State::held;
        case LockSet::State::lost:
            return PowerAssertionReport::State::lost;
        case LockSet::State::refused:
            break;
    }
    return PowerAssertionReport::State::refused;
}

}  // namespace

DesktopPowerAssertions::DesktopPowerAssertions(LockServices& services, QString desktop,
                                               std::chrono::milliseconds bound)
    : services_(services), desktop_(std::move(desktop)), bound_(bound) {
    services_.setHandlers(
        [this] {
            for (const auto& [id, set] : sets_) {
                set->ownersChanged();
            }
        },
        [this] {
            for (const auto& [id, set] : sets_) {
                set->confirm();
            }
        });
}

DesktopPowerAssertions::~DesktopPowerAssertions() {
    services_.setHandlers({}, {});
}

std::optional<PowerAssertionID> DesktopPowerAssertions::create(const std::string& type, std::uint32_t level,
                                                               const std::string& name) {
    if ((type != displayType && type != systemType) || level != levelOn) {
        return std::nullopt;
    }
    const PowerAssertionID id = ++lastID_;
    auto set = waitForSet(id, {type == displayType, QString::fromStdString(name)});
    isRefused_ = set->state() == LockSet::State::refused;
    if (!isRefused_) {
        sets_.emplace(id, std::move(set));
    }
    announce();
    return isRefused_ ? std::nullopt : std::optional(id);
}

std::unique_ptr<LockSet> DesktopPowerAssertions::waitForSet(PowerAssertionID id, const LockWish& wish) {
    const auto deadline = std::chrono::steady_clock::now() + bound_;
    auto set = std::make_unique<LockSet>(services_, wish, [this, id] { setChanged(id); });
    while (set->state() == LockSet::State::asking && std::chrono::steady_clock::now() < deadline) {
        std::this_thread::sleep_for(pollInterval);
        services_.poll();
        set->poll();
    }
    return set;
}

void DesktopPowerAssertions::release(PowerAssertionID id) {
    if (sets_.erase(id) > 0) {
        isRefused_ = false;
        announce();
    }
}

void DesktopPowerAssertions::setRevocationHandler(std::function<void(PowerAssertionID)> handler) {
    revocationHandler_ = std::move(handler);
}

PowerAssertionReport DesktopPowerAssertions::report() const {
    PowerAssertionReport report;
    if (isRefused_) {
        report.state = PowerAssertionReport::State::refused;
    } else if (!sets_.empty()) {
        const LockSet& newest = *sets_.rbegin()->second;
        report.state = reportState(newest.state());
        for (const auto mechanism : newest.holders()) {
            auto name = holderName(mechanism, desktop_);
            if (std::ranges::count(report.holders, name) == 0) {
                report.holders.push_back(std::move(name));
            }
        }
    }
    return report;
}

void DesktopPowerAssertions::setReportHandler(std::function<void()> handler) {
    reportHandler_ = std::move(handler);
}

void DesktopPowerAssertions::setChanged(PowerAssertionID id) {
    const auto found = sets_.find(id);
    if (found == sets_.end()) {
        return;  // `create` still waits for it
    }
    if (found->second->state() == LockSet::State::refused) {
        // Deferred: the set is the caller.
        QMetaObject::invokeMethod(
            &context_, [this, id] { revoke(id); }, Qt::QueuedConnection);
    }
    announce();
}

void DesktopPowerAssertions::revoke(PowerAssertionID id) {
    const auto found = sets_.find(id);
    if (found == sets_.end() || found->second->state() != LockSet::State::refused) {
        return;
    }
    sets_.erase(found);
    isRefused_ = true;
    if (const auto handler = revocationHandler_) {
        handler(id);
    }
    announce();
}

void DesktopPowerAssertions::announce() const {
    if (const auto handler = reportHandler_) {
        handler();
    }
}

}  // namespace kestro
