#pragma once

#include "core/base/announcer.h"

#include <forward_list>
#include <functional>
#include <memory>
#include <utility>

namespace kestro {

/// A value that only its `Owner` may assign and that anyone may read and observe. The owner assigns with `set`, or
/// with `swapIn` to reuse the old value's storage.
///
/// Every assignment, even of an equal value, calls every subscriber exactly once, on the main thread, after the
/// value has changed. Subscribers always receive the newest value: when one of them assigns again, those after it
/// are still called once per assignment, both times with the newer value. Subscribing, unsubscribing, reassigning
/// and destroying the owner inside a callback are safe. The reference passed to a subscriber stays valid until the
/// outermost notification ends.
template <typename T, typename Owner>
class Published {
public:
    using Callback = std::function<void(const T&)>;

    Published() : state_(std::make_shared<State>()) {}
    explicit Published(T initial) : state_(std::make_shared<State>(State{std::move(initial), {}})) {}
    Published(const Published&) = delete;
    Published& operator=(const Published&) = delete;

    const T& get() const { return state_->value; }

    /// Calls `callback` with the new value after every assignment, until the returned object is destroyed. Does
    /// not call it for the current value.
    Subscription subscribe(Callback callback) const { return announcer_.subscribe(std::move(callback)); }

private:
    friend Owner;

    struct State {
        T value{};
        std::forward_list<T> retired;  // values that a running notification may still reference
    };

    void set(T value) { swapIn(value); }

    /// Like `set`, but returns the previous value in `value` so that the owner can reuse its storage. An
    /// assignment inside a notification returns an empty value.
    void swapIn(T& value) {
        const auto state = state_;  // a subscriber may destroy this object
        if (announcer_.isAnnouncing()) {
            state->retired.push_front(std::exchange(state->value, std::exchange(value, T{})));
            announce(state);
            return;
        }
        std::swap(state->value, value);
        announce(state);
        if (!state->retired.empty()) {
            state->retired.clear();
        }
    }

    void announce(const std::shared_ptr<State>& state) {
        announcer_.announceWith([&state](const Callback& callback) { callback(state->value); });
    }

    std::shared_ptr<State> state_;
    mutable Announcer<const T&> announcer_;
};

}  // namespace kestro
