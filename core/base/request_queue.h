#pragma once

#include <algorithm>
#include <cstddef>
#include <deque>
#include <optional>
#include <utility>

namespace kestro {

/// Requests that wait for later turns of an event loop, oldest first. A request that equals a waiting one
/// replaces it in its place, and any beyond the limit is dropped: a flood costs no more than one request of each
/// kind. One thread.
template <typename Request>
class RequestQueue {
public:
    static constexpr std::size_t limit = 64;

    /// False: the queue has not grown.
    bool add(Request request) {
        const auto equal = std::ranges::find(waiting_, request);
        if (equal != waiting_.end()) {
            *equal = std::move(request);
            return false;
        }
        if (waiting_.size() >= limit) {
            return false;
        }
        waiting_.push_back(std::move(request));
        return true;
    }

    /// Removes and returns the oldest request; nullopt: none is waiting.
    std::optional<Request> take() {
        if (waiting_.empty()) {
            return std::nullopt;
        }
        Request oldest = std::move(waiting_.front());
        waiting_.pop_front();
        return oldest;
    }

    bool isEmpty() const { return waiting_.empty(); }

private:
    std::deque<Request> waiting_;
};

}  // namespace kestro
