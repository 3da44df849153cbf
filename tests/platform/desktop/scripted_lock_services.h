#pragma once

#include "platform/desktop/lock_services.h"

#include <algorithm>
#include <map>
#include <memory>
#include <utility>
#include <vector>

namespace kestro::test {

/// Services that grant, refuse, answer late, leave and return at a test's request, without a bus. They count the
/// locks that they hold, as the real ones do: a lock ends with its release, or with the service that granted it.
class ScriptedLockServices final : public LockServices {
public:
    enum class Reply { grant, refuse, late };

    bool isKnown() const override { return true; }
    LockSession session() const override { return kind; }

    QString owner(LockMechanism mechanism) const override {
        const auto found = owners_.find(mechanism);
        return found == owners_.end() ? QString() : found->second;
    }

    std::unique_ptr<ServiceLock> ask(LockMechanism mechanism, const LockWish&,
                                     std::function<void()> onChange) override {
        auto request = std::make_shared<Request>();
        request->mechanism = mechanism;
        request->owner = owner(mechanism);
        request->onChange = std::move(onChange);
        requests_.push_back(request);
        if (reply != Reply::late) {
            answer(*request, reply == Reply::grant);
        }
        return std::make_unique<Lock>(request);
    }

    void poll() override {}

    void setHandlers(std::function<void()> onOwnersChanged, std::function<void()> onResumed) override {
        onOwnersChanged_ = std::move(onOwnersChanged);
        onResumed_ = std::move(onResumed);
    }

    void appear(LockMechanism mechanism) {
        if (owner(mechanism).isEmpty()) {
            owners_[mechanism] = QStringLiteral(":1.%1").arg(++lastOwner_);
            onOwnersChanged_();
        }
    }

    /// Its locks end with it, and its open requests are never answered.
    void vanish(LockMechanism mechanism) {
        const QString gone = owner(mechanism);
        owners_.erase(mechanism);
        for (const auto& request : requests_) {
            if (request->mechanism == mechanism && request->owner == gone) {
                request->isHeld = false;
                request->isOver = true;
            }
        }
        onOwnersChanged_();
    }

    /// Answers every open request. A lock that is no longer wanted is released as soon as it is granted.
    void answerOpenRequests(bool isGranted) {
        for (const auto& request : std::vector(requests_)) {
            if (request->state == LockState::asking && !request->isOver) {
                answer(*request, isGranted);
                if (request->isWanted) {
                    const auto handler = request->onChange;
                    handler();
                } else {
                    request->isHeld = false;
                }
            }
        }
    }

    void resume() { onResumed_(); }

    /// The locks that a mechanism's service holds.
    std::ptrdiff_t held(LockMechanism mechanism) const {
        return std::ranges::count_if(requests_, [mechanism](const auto& request) {
            return request->isHeld && request->mechanism == mechanism;
        });
    }

    std::ptrdiff_t held() const {
        return std::ranges::count_if(requests_, [](const auto& request) { return request->isHeld; });
    }

    /// The requests and locks that are still wanted.
    std::ptrdiff_t wanted() const {
        return std::ranges::count_if(requests_, [](const auto& request) { return request->isWanted; });
    }

    Reply reply = Reply::grant;
    LockSession kind;

private:
    struct Request {
        LockMechanism mechanism{};
        QString owner;
        std::function<void()> onChange;
        LockState state = LockState::asking;
        bool isWanted = true;
        bool isHeld = false;
        bool isOver = false;
    };

    struct Lock final : ServiceLock {
        explicit Lock(std::shared_ptr<Request> made) : request(std::move(made)) {}
        ~Lock() override {
            request->isWanted = false;
            request->isHeld = false;
        }
        LockState state() const override { return request->state; }

        const std::shared_ptr<Request> request;
    };

    static void answer(Request& request, bool isGranted) {
        request.state = isGranted ? LockState::held : LockState::refused;
        request.isHeld = isGranted;
    }

    std::map<LockMechanism, QString> owners_;
    std::vector<std::shared_ptr<Request>> requests_;
    int lastOwner_ = 0;
    std::function<void()> onOwnersChanged_;
    std::function<void()> onResumed_;
};

}  // namespace kestro::test
