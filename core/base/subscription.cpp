#include "core/base/subscription.h"

#include "core/base/subscriber_list.h"

#include <utility>

namespace kestro {

Subscription::Subscription(std::weak_ptr<SubscriberList> list, std::uint64_t id)
    : list_(std::move(list)), id_(id) {}

Subscription::Subscription(Subscription&& other) noexcept
    : list_(std::exchange(other.list_, {})), id_(std::exchange(other.id_, 0)) {}

Subscription& Subscription::operator=(Subscription&& other) noexcept {
    if (this != &other) {
        cancel();
        list_ = std::exchange(other.list_, {});
        id_ = std::exchange(other.id_, 0);
    }
    return *this;
}

void Subscription::cancel() {
    const auto list = std::exchange(list_, {}).lock();
    const auto id = std::exchange(id_, 0);
    if (list) {
        list->unsubscribe(id);
    }
}

}  // namespace kestro
