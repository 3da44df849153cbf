#pragma once

#include <dispatch/dispatch.h>

#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace kestro::fakes {

/// The dispatch library. Sources of vnode events watch real files, through inotify(7); signals come from the test.
/// Work on global queues waits until a test runs it, each item on a thread of its own.
class FakeDispatch {
public:
    FakeDispatch();
    ~FakeDispatch();
    FakeDispatch(const FakeDispatch&) = delete;
    FakeDispatch& operator=(const FakeDispatch&) = delete;

    /// What a signal to this process does besides its effect.
    void raise(int signal);

    /// Delivers the next event or cancellation. False: there is none.
    bool runMainQueue();

    struct Work {
        dispatch_group_s* group = nullptr;
        std::intptr_t quality = 0;
        void* context = nullptr;
        dispatch_function_t function = nullptr;
    };
    std::deque<Work> work;

    /// Runs the oldest item on another thread and waits for it. False: there is none.
    bool runWork();

    bool hangs = false;  ///< whether waiting with a bound times out instead of running the work

    struct Group : dispatch_group_s {
        std::int64_t references = 1;
    };
    struct Source : dispatch_source_s {
        ~Source();
        std::int64_t references = 1;
        int descriptor = -1;
        int inotify = -1;
        int signal = 0;  ///< of a source of signals
        std::uintptr_t arrivals = 0;
        std::uintptr_t mask = 0;
        std::uintptr_t data = 0;
        void* context = nullptr;
        dispatch_function_t handler = nullptr;
        dispatch_function_t cancelHandler = nullptr;
        bool isRunning = false;
        bool isCancelled = false;
        bool isFinished = false;  ///< cancelled, and its handler has been called
    };
    std::vector<std::unique_ptr<Group>> groups;
    std::deque<std::unique_ptr<Source>> sources;

    std::mutex mutex;  ///< guards `work`
    std::vector<std::string> misuse;
    void appendHeld(std::vector<std::string>& all) const;
};

}  // namespace kestro::fakes
