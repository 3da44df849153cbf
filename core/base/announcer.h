#pragma once

#include "core/base/subscriber_list.h"
#include "core/base/subscription.h"

#include <functional>
#include <memory>
#include <utility>

namespace kestro {

/// Calls every subscriber once per announcement, in subscription order. A nested announcement is queued until the
/// running one has reached every subscriber. A subscriber that joins after an announcement was made misses that
/// one. Subscribing, unsubscribing and destroying the announcer inside a callback are safe. Main thread only.
/// Announcing allocates nothing unless it is nested.
template <typename... Args>
class Announcer {
public:
    using Callback = std::function<void(Args...)>;

    Announcer() : list_(std::make_shared<SubscriberList>()) {}
    ~Announcer() { list_->close(); }
    Announcer(const Announcer&) = delete;
    Announcer& operator=(const Announcer&) = delete;

    /// The callback stays subscribed until the returned object is destroyed.
    Subscription subscribe(Callback callback) const {
        return Subscription(list_, list_->add(std::make_unique<Subscriber>(std::move(callback))));
    }

    /// Calls `deliver(callback)` for each subscriber, which reads the value at that moment, so that none sees a
    /// stale one. Returns false if a subscriber destroyed the announcer.
    template <typename Deliver>
    bool announceWith(Deliver deliver) {
        const auto list = list_;
        return list->announce(
            [](void* context, const SubscriberList::Slot& slot) {
                (*static_cast<Deliver*>(context))(static_cast<const Subscriber&>(slot).callback);
            },
            &deliver);
    }

    bool announce() requires(sizeof...(Args) == 0) {
        return announceWith([](const Callback& callback) { callback(); });
    }

    /// Whether an announcement is being delivered right now.
    bool isAnnouncing() const { return list_->isAnnouncing(); }

private:
    struct Subscriber final : SubscriberList::Slot {
        explicit Subscriber(Callback called) : callback(std::move(called)) {}
        const Callback callback;
    };

    std::shared_ptr<SubscriberList> list_;
};

}  // namespace kestro
