#pragma once

#include "platform/macos/owned.h"

#include <dispatch/dispatch.h>

#include <array>
#include <functional>

namespace kestro {

/// Turns SIGTERM, SIGINT and SIGHUP into a call on the main thread, while the main run loop runs. A signal that
/// was ignored when the process started stays ignored. One at a time; main thread.
class TerminationSignals {
public:
    /// Where the system refuses to watch a signal, that one keeps its default effect.
    explicit TerminationSignals(std::function<void()> handler);

    /// Gives the signals their default effect again.
    ~TerminationSignals();
    TerminationSignals(const TerminationSignals&) = delete;
    TerminationSignals& operator=(const TerminationSignals&) = delete;

private:
    struct Watched {
        int signal = 0;
        DispatchOwned<dispatch_source_t> source;
    };

    static void arrived(void* self);

    const std::function<void()> handler_;
    std::array<Watched, 3> watched_;
};

}  // namespace kestro
