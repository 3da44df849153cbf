#pragma once

#include <functional>
#include <memory>

namespace kestro {

/// A running watch; destroying it cancels it.
class PowerEventSource {
public:
    virtual ~PowerEventSource() = default;
};

/// Announcements that a charger or a battery has changed. Main thread.
class PowerEvents {
public:
    virtual ~PowerEvents() = default;

    /// Calls `handler` on the main thread after every change that the system announces. nullptr: it announces
    /// none, so the caller has to poll.
    [[nodiscard]] virtual std::unique_ptr<PowerEventSource> watch(std::function<void()> handler) = 0;
};

}  // namespace kestro
