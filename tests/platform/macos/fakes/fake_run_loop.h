#pragma once

#include "tests/platform/macos/fakes/fake_objects.h"

#include <CoreFoundation/CoreFoundation.h>

#include <chrono>
#include <cstddef>
#include <deque>
#include <mutex>
#include <string>
#include <vector>

namespace kestro::fakes {

/// The main run loop, the preferences and the distributed notification centre. Time passes only in `advance`.
class FakeRunLoop {
public:
    /// Runs sources, notifications and the main queue until none is left, without letting time pass. May be called
    /// inside a callback, as a nested event loop.
    void runPending();

    /// Lets time pass, for timers that are due in order, and runs what they cause.
    void advance(std::chrono::nanoseconds duration);

    /// Lets time pass without running anything, like a busy main thread.
    static void stall(std::chrono::nanoseconds duration);

    struct Timer {
        CFRunLoopTimerCallBack callback = nullptr;
        void* info = nullptr;
        double fireDate = 0;
        double interval = 0;
        double tolerance = 0;
        bool isAdded = false;
        bool isValid = true;
        bool isFiring = false;
        std::int64_t firings = 0;
    };
    struct Source {
        CFRunLoopSourceContext context{};
        bool isAdded = false;
        bool isValid = true;
        bool isSignalled = false;
    };
    std::deque<Timer> timers;    ///< every one so far, in order of creation
    std::deque<Source> sources;  ///< likewise
    std::int64_t wakeUps = 0;

    /// The source of the notification port of system power.
    static CFRunLoopSourceRef powerSource();

    FakeDictionary preferences;        ///< as the program reads and writes them
    FakeDictionary storedPreferences;  ///< in permanent storage: as of the last synchronization
    std::int64_t synchronizations = 0;
    std::int64_t preferenceWrites = 0;

    struct Observer {
        void* observer = nullptr;
        CFNotificationCallback callback = nullptr;
        std::string name;
    };
    struct Posting {
        std::string name;
        FakeDictionary userInfo;
        bool hasUserInfo = false;
    };
    std::vector<Observer> observers;
    std::deque<Posting> postings;  ///< not delivered yet

    std::mutex mutex;  ///< guards the signals of sources and `wakeUps`
    std::vector<std::string> misuse;
    void appendHeld(std::vector<std::string>& all) const;

private:
    bool runSources();
    bool takeSignal(Source& source);
    bool deliverPosting();
    Timer* dueBy(double time);
};

}  // namespace kestro::fakes
