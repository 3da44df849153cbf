#pragma once

#include "platform/posix/descriptor.h"

#include <chrono>
#include <string>

namespace kestro {

/// Finds out whether a message bus answers before the toolkit connects to it: connecting to a bus that accepts and
/// never answers would block this program's other connections too, for almost half a minute. The probe sends the
/// first line of the D-Bus authentication, which every bus answers, and closes the connection. Any thread.
class BusProbe {
public:
    /// Sends the request and returns at once. `addresses` has the form of DBUS_SESSION_BUS_ADDRESS. Only local
    /// sockets are probed; a bus at an address of another kind counts as answering.
    explicit BusProbe(const std::string& addresses);

    /// The addresses of this session's and this machine's bus; empty: unknown.
    static std::string sessionAddresses();
    static std::string systemAddresses();

    /// Waits for the answer at most until `bound` has passed. False: no answer until then, or there is no such
    /// bus.
    bool answersWithin(std::chrono::milliseconds bound);

    /// Whether there is such a bus that has not answered yet.
    bool isUnanswered() const { return state_ == State::waiting || state_ == State::busy; }

private:
    enum class State { waiting, busy, answers, silent };

    void connect();

    std::string name_;
    Descriptor socket_;
    State state_ = State::waiting;
};

}  // namespace kestro
