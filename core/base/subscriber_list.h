#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <thread>
#include <vector>

namespace kestro {

/// The subscribers of one Announcer and the order of their calls. It does not know what a subscriber is called
/// with, so that its code is shared by announcers of every type. See Announcer for the guarantees. Only for the
/// thread that created it, which debug builds verify.
class SubscriberList {
public:
    /// A subscriber. The announcer derives its own kind, which holds the callback.
    class Slot {
    public:
        virtual ~Slot() = default;

    private:
        friend class SubscriberList;
        std::uint64_t id_ = 0;
        bool isLive_ = true;
    };

    /// Calls one subscriber; `context` is what was passed to `announce`.
    using Call = void (*)(void* context, const Slot& slot);

    /// Returns the identifier to unsubscribe with.
    std::uint64_t add(std::unique_ptr<Slot> slot);

    /// Removes the subscriber with this identifier; an unknown one is ignored. Safe during an announcement.
    void unsubscribe(std::uint64_t id);

    /// Calls every subscriber. Returns false when the list was closed by one of them.
    bool announce(Call call, void* context);

    bool isAnnouncing() const { return isAnnouncing_; }

    /// Ends a running announcement: no further subscriber is called.
    void close() { isClosed_ = true; }

private:
    bool isOnItsThread() const { return std::this_thread::get_id() == thread_; }
    void pass(std::uint64_t newestId, Call call, void* context);
    void sweep();

    std::vector<std::unique_ptr<Slot>> slots_;  // pointers: a slot stays put while the list grows
    std::vector<std::uint64_t> waiting_;
    const std::thread::id thread_ = std::this_thread::get_id();
    std::uint64_t lastId_ = 0;
    bool isAnnouncing_ = false;
    bool needsSweep_ = false;
    bool isClosed_ = false;
};

}  // namespace kestro
