#include "core/base/subscriber_list.h"

#include <algorithm>
#include <cassert>
#include <iterator>
#include <utility>

namespace kestro {

std::uint64_t SubscriberList::add(std::unique_ptr<Slot> slot) {
    assert(isOnItsThread());
    slot->id_ = ++lastId_;
    slots_.push_back(std::move(slot));
    return lastId_;
}

void SubscriberList::unsubscribe(std::uint64_t id) {
    assert(isOnItsThread());
    const auto found = std::ranges::find_if(slots_, [id](const auto& slot) { return slot->id_ == id; });
    if (found == slots_.end()) {
        return;
    }
    if (isAnnouncing_) {
        // The callback may be the one that is running: it is destroyed after the pass.
        (*found)->isLive_ = false;
        needsSweep_ = true;
    } else {
        // Out of the list first: destroying the callback may unsubscribe others.
        const auto retired = std::move(*found);
        slots_.erase(found);
    }
}

bool SubscriberList::announce(Call call, void* context) {
    assert(isOnItsThread());
    if (isAnnouncing_) {
        waiting_.push_back(lastId_);
        return true;
    }
    isAnnouncing_ = true;
    pass(lastId_, call, context);
    for (std::size_t next = 0; next < waiting_.size() && !isClosed_; ++next) {
        pass(waiting_[next], call, context);
    }
    waiting_.clear();
    isAnnouncing_ = false;
    sweep();
    return !isClosed_;
}

void SubscriberList::pass(std::uint64_t newestId, Call call, void* context) {
    for (std::size_t index = 0; index < slots_.size() && !isClosed_; ++index) {
        const Slot& slot = *slots_[index];
        if (slot.id_ > newestId) {
            break;
        }
        if (slot.isLive_) {
            call(context, slot);
        }
    }
}

void SubscriberList::sweep() {
    if (!std::exchange(needsSweep_, false)) {
        return;
    }
    std::vector<std::unique_ptr<Slot>> retired;
    const auto firstDead =
        std::stable_partition(slots_.begin(), slots_.end(), [](const auto& slot) { return slot->isLive_; });
    std::move(firstDead, slots_.end(), std::back_inserter(retired));
    slots_.erase(firstDead, slots_.end());
}

}  // namespace kestro
