#pragma once

#include <cstdint>
#include <memory>

namespace kestro {

class SubscriberList;

/// One subscriber's entry in a list, removed when this object is destroyed. Move-only; may outlive the list. Main
/// thread only.
class [[nodiscard]] Subscription {
public:
    Subscription() = default;
    Subscription(std::weak_ptr<SubscriberList> list, std::uint64_t id);
    Subscription(Subscription&& other) noexcept;
    Subscription& operator=(Subscription&& other) noexcept;
    Subscription(const Subscription&) = delete;
    Subscription& operator=(const Subscription&) = delete;
    ~Subscription() { cancel(); }

    /// Unsubscribes now; a second call does nothing.
    void cancel();

private:
    std::weak_ptr<SubscriberList> list_;
    std::uint64_t id_ = 0;
};

}  // namespace kestro
