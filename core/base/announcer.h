#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "core/base/subscription.h"

namespace kestro {

/// Calls every subscriber once per announcement, in subscription order. A nested announcement is queued until the
/// running one has reached every subscriber. A subscriber that joins after an announcement was made misses that
/// one. Subscribing, unsubscribing and destroying the announcer inside a callback are safe. Main thread only.
/// Announcing allocates nothing unless it is nested.
template <typename... Args>
class Announcer {
public:
    using Callback = std::function<void(Args...)>;

    Announcer() : list_(std::make_shared<List>()) {}
    ~Announcer() { list_->close(); }
    Announcer(const Announcer&) = delete;
    Announcer& operator=(const Announcer&) = delete;

    /// The callback stays subscribed until the returned object is destroyed.
    Subscription subscribe(Callback callback) const {
        return Subscription(list_, list_->add(std::move(callback)));
    }

    /// Invokes `arguments` before each call, so that no subscriber sees a stale value. Returns false if a
    /// subscriber destroyed the announcer.
    template <typename Arguments>
    bool announceWith(Arguments&& arguments) {
        const auto list = list_;
        return list->announce(arguments);
    }

    bool announce() requires(sizeof...(Args) == 0) {
        return announceWith([](const Callback& callback) { callback(); });
    }

    /// Whether an announcement is being delivered right now.
    bool isAnnouncing() const { return list_->announcing(); }

private:
    class List final : public SubscriberList {
    public:
        std::uint64_t add(Callback callback) {
            slots_.push_back(std::make_unique<Slot>(Slot{++lastId_, std::move(callback), true}));
            return lastId_;
        }

        void unsubscribe(std::uint64_t id) override {
            const auto found = std::ranges::find_if(slots_, [id](const auto& slot) { return slot->id == id; });
            if (found == slots_.end()) {
                return;
            }
            if (announcing_) {
                // The callback may be the running one: destroy it after the pass.
                (*found)->live = false;
                needsSweep_ = true;
            } else {
                // Remove it from the list first: destroying the callback may unsubscribe others.
                const auto retired = std::move(*found);
                slots_.erase(found);
            }
        }

        void close() { closed_ = true; }
        bool announcing() const { return announcing_; }

        template <typename Invoke>
        bool announce(Invoke& invoke) {
            if (announcing_) {
                waiting_.push_back(lastId_);
                return true;
            }
            announcing_ = true;
            pass(lastId_, invoke);
            for (std::size_t next = 0; next < waiting_.size() && !closed_; ++next) {
                pass(waiting_[next], invoke);
            }
            waiting_.clear();
            announcing_ = false;
            sweep();
            return !closed_;
        }

    private:
        struct Slot {
            std::uint64_t id;
            Callback callback;
            bool live;
        };

        template <typename Invoke>
        void pass(std::uint64_t newestId, Invoke& invoke) {
            for (std::size_t index = 0; index < slots_.size() && !closed_; ++index) {
                Slot& slot = *slots_[index];
                if (slot.id > newestId) {
                    break;
                }
                if (slot.live) {
                    invoke(slot.callback);
                }
            }
        }

        void sweep() {
            if (!std::exchange(needsSweep_, false)) {
                return;
            }
            std::vector<std::unique_ptr<Slot>> retired;
            const auto firstDead =
                std::stable_partition(slots_.begin(), slots_.end(), [](const auto& slot) { return slot->live; });
            std::move(firstDead, slots_.end(), std::back_inserter(retired));
            slots_.erase(firstDead, slots_.end());
        }

        std::vector<std::unique_ptr<Slot>> slots_;  // pointers keep slots in place while the list grows
        std::vector<std::uint64_t> waiting_;
        std::uint64_t lastId_ = 0;
        bool announcing_ = false;
        bool needsSweep_ = false;
        bool closed_ = false;
    };

    std::shared_ptr<List> list_;
};

}  // namespace kestro
