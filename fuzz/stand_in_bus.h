#pragma once

#include "platform/posix/descriptor.h"

#include <string>
#include <thread>
#include <vector>

namespace kestro {

/// What a connection needs of a message bus to be made: it names every caller and grants every name. It refuses
/// everything else and delivers nothing. Runs in its own threads; outlives its callers.
class StandInBus {
public:
    StandInBus();
    ~StandInBus();
    StandInBus(const StandInBus&) = delete;
    StandInBus& operator=(const StandInBus&) = delete;

    /// Where it listens, in the form of DBUS_SESSION_BUS_ADDRESS.
    const std::string& address() const { return address_; }

private:
    void acceptCallers();

    Descriptor listener_;
    std::string address_;
    std::vector<std::thread> conversations_;
    std::thread acceptor_;  // last: uses the others
};

}  // namespace kestro
