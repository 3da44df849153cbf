#include "platform/macos/termination_signals.h"

#include <csignal>
#include <cstdint>
#include <utility>

namespace kestro {

namespace {

// Instead of the default effect; the source reports the signal in any case. Unlike an ignored signal, it does not
// stay with a child.
extern "C" void doNothing(int) {}

bool isIgnored(int signal) {
    struct sigaction action {};
    return sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

void handleWith(void (*handler)(int), int signal) {
    struct sigaction action {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    sigaction(signal, &action, nullptr);
}

}  // namespace

TerminationSignals::TerminationSignals(std::function<void()> handler)
    : handler_(std::move(handler)), watched_{{{SIGTERM, {}}, {SIGINT, {}}, {SIGHUP, {}}}} {
    for (auto& [signal, source] : watched_) {
        if (isIgnored(signal)) {
            continue;
        }
        source.reset(dispatch_source_create(DISPATCH_SOURCE_TYPE_SIGNAL, static_cast<std::uintptr_t>(signal), 0,
                                            dispatch_get_main_queue()));
        if (source) {
            handleWith(&doNothing, signal);
            dispatch_set_context(source.get(), this);
            dispatch_source_set_event_handler_f(source.get(), &arrived);
            dispatch_resume(source.get());
        }
    }
}

TerminationSignals::~TerminationSignals() {
    for (const auto& [signal, source] : watched_) {
        if (source) {
            dispatch_source_cancel(source.get());
            handleWith(SIG_DFL, signal);
        }
    }
}

void TerminationSignals::arrived(void* self) {
    static_cast<const TerminationSignals*>(self)->handler_();
}

}  // namespace kestro
