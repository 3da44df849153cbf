#include "platform/desktop/unix_signal_notifier.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cassert>
#include <cerrno>
#include <csignal>
#include <utility>

namespace kestro {

namespace {

constexpr std::array handledSignals{SIGTERM, SIGINT, SIGHUP};

// A signal handler can only reach statics.
std::array<int, 2> pipeEnds{-1, -1};
std::array<struct sigaction, handledSignals.size()> formerActions;

extern "C" void writeSignalToPipe(int signalNumber) {
    const int error = errno;
    const auto byte = static_cast<unsigned char>(signalNumber);
    // A full pipe already holds plenty of signals.
    [[maybe_unused]] const auto written = ::write(pipeEnds[1], &byte, 1);
    errno = error;
}

int openPipe() {
    assert(pipeEnds[0] < 0);
    if (::pipe2(pipeEnds.data(), O_NONBLOCK | O_CLOEXEC) != 0) {
        pipeEnds = {-1, -1};
    }
    return pipeEnds[0];
}

}  // namespace

UnixSignalNotifier::UnixSignalNotifier(Handler handler)
    : handler_(std::move(handler)), notifier_(openPipe(), QSocketNotifier::Read) {
    if (pipeEnds[0] < 0) {
        return;  // without the pipe, the signals keep their default effect
    }
    QObject::connect(&notifier_, &QSocketNotifier::activated, &context_, [this] { deliver(); });
    for (std::size_t index = 0; index < handledSignals.size(); ++index) {
        struct sigaction action {};
        action.sa_handler = writeSignalToPipe;
        action.sa_flags = SA_RESTART;
        ::sigaction(handledSignals[index], nullptr, &formerActions[index]);
        if (formerActions[index].sa_handler != SIG_IGN) {
            ::sigaction(handledSignals[index], &action, nullptr);
        }
    }
}

UnixSignalNotifier::~UnixSignalNotifier() {
    if (pipeEnds[0] < 0) {
        return;
    }
    for (std::size_t index = 0; index < handledSignals.size(); ++index) {
        ::sigaction(handledSignals[index], &formerActions[index], nullptr);
    }
    notifier_.setEnabled(false);
    ::close(pipeEnds[0]);
    ::close(pipeEnds[1]);
    pipeEnds = {-1, -1};
}

void UnixSignalNotifier::deliver() {
    unsigned char signalNumber = 0;
    while (::read(pipeEnds[0], &signalNumber, 1) == 1) {
        handler_(signalNumber);
    }
}

}  // namespace kestro
