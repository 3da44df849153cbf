#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <utility>

#include "core/base/announcer.h"

namespace kestro {

/// A value that announces every assignment. Shared part of both forms of Published below.
///
/// Every assignment, one of an equal value included, calls every subscriber exactly once, on the main
/// thread, after the value has changed. A subscriber always receives the newest value: when one of them
/// assigns again, the ones after it are called once for each assignment, both times with the newer value.
/// Subscribing, unsubscribing, assigning again and destroying the owner inside a call are safe; the
/// reference that a subscriber receives stays valid until the outermost notification has ended.
template <typename T>
class PublishedValue {
public:
    using Callback = std::function<void(const T&)>;

    PublishedValue() : state_(std::make_shared<State>()) {}
    explicit PublishedValue(T initial) : state_(std::make_shared<State>(State{std::move(initial), {}})) {}
    PublishedValue(const PublishedValue&) = delete;
    PublishedValue& operator=(const PublishedValue&) = delete;

    const T& get() const { return state_->value; }

    /// Calls `callback` with the new value after every assignment, until the returned object dies.
    /// It is not called for the value held at the moment of subscribing.
    Subscription subscribe(Callback callback) const { return announcer_.subscribe(std::move(callback)); }

protected:
    ~PublishedValue() = default;

    void assign(T value) { assignBySwapping(value); }

    /// As `assign`, and leaves in `value` what was held before, so that its storage can be used again; an
    /// assignment inside a notification leaves an empty value.
    void assignBySwapping(T& value) {
        const auto state = state_;  // a subscriber may destroy this object
        if (announcer_.isAnnouncing()) {
            state->retired.push_back(std::exchange(state->value, std::exchange(value, T{})));
            announce(state);
            return;
        }
        std::swap(state->value, value);
        announce(state);
        if (!state->retired.empty()) {
            state->retired.clear();
        }
    }

private:
    struct State {
        T value{};
        std::deque<T> retired;  // values that a running notification may still refer to
    };

    void announce(const std::shared_ptr<State>& state) {
        announcer_.announceWith([&state](const Callback& callback) { callback(state->value); });
    }

    std::shared_ptr<State> state_;
    mutable Announcer<const T&> announcer_;
};

/// A value that only its `Owner` assigns and that everybody may read and observe. The owner assigns with
/// `set`, or with `swapIn` to get the old value's storage back. See PublishedValue for the guarantees.
template <typename T, typename Owner = void>
class Published : public PublishedValue<T> {
public:
    using PublishedValue<T>::PublishedValue;

private:
    friend Owner;
    void set(T value) { this->assign(std::move(value)); }
    void swapIn(T& value) { this->assignBySwapping(value); }
};

/// A value that anybody may assign.
template <typename T>
class Published<T, void> : public PublishedValue<T> {
public:
    using PublishedValue<T>::PublishedValue;
    void set(T value) { this->assign(std::move(value)); }

    /// As `set`, and leaves the old value in `value`, for its storage.
    void swapIn(T& value) { this->assignBySwapping(value); }
};

}  // namespace kestro
