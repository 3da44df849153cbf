#pragma once

#include <cstdint>
#include <memory>
#include <utility>

namespace kestro {

/// The list from which a Subscription removes itself. Main thread only.
class SubscriberList {
public:
    virtual ~SubscriberList() = default;

    /// Removes the subscriber with this identifier; an unknown one is ignored. Safe during a notification.
    virtual void unsubscribe(std::uint64_t id) = 0;
};

/// One subscriber's entry in a list, removed when this object is destroyed. Move-only; may outlive the list. Main
/// thread only.
class [[nodiscard]] Subscription {
public:
    Subscription() = default;
    Subscription(std::weak_ptr<SubscriberList> list, std::uint64_t id) : list_(std::move(list)), id_(id) {}

    Subscription(Subscription&& other) noexcept
        : list_(std::exchange(other.list_, {})), id_(std::exchange(other.id_, 0)) {}

    Subscription& operator=(Subscription&& other) noexcept {
        if (this != &other) {
            cancel();
            list_ = std::exchange(other.list_, {});
            id_ = std::exchange(other.id_, 0);
        }
        return *this;
    }

    Subscription(const Subscription&) = delete;
    Subscription& operator=(const Subscription&) = delete;

    ~Subscription() { cancel(); }

    /// Unsubscribes now; a second call does nothing.
    void cancel() {
        const auto list = std::exchange(list_, {}).lock();
        const auto id = std::exchange(id_, 0);
        if (list) {
            list->unsubscribe(id);
        }
    }

private:
    std::weak_ptr<SubscriberList> list_;
    std::uint64_t id_ = 0;
};

}  // namespace kestro
