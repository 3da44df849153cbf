#pragma once

#include "platform/posix/descriptor.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>

#include <cstddef>
#include <cstring>
#include <stdexcept>
#include <string>

namespace kestro {

/// A local socket that accepts connections and never says anything, like a service that hangs.
class SilentSocket {
public:
    /// `name` is a path, or a name in the abstract namespace, which starts with a zero byte.
    explicit SilentSocket(const std::string& name) : socket_(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        if (name.size() >= sizeof address.sun_path) {
            throw std::runtime_error("too long for a socket: " + name);
        }
        std::memcpy(address.sun_path, name.data(), name.size());
        const auto length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + name.size());
        if (::bind(socket_.get(), reinterpret_cast<const sockaddr*>(&address), length) != 0 ||
            ::listen(socket_.get(), callers) != 0) {
            throw std::runtime_error("cannot listen at " + name);
        }
    }

    /// Accepts the next caller within `bound` milliseconds; closed: there was none.
    Descriptor accept(int bound) const {
        pollfd caller{socket_.get(), POLLIN, 0};
        return Descriptor(::poll(&caller, 1, bound) > 0 ? ::accept4(socket_.get(), nullptr, nullptr, SOCK_CLOEXEC)
                                                        : -1);
    }

private:
    static constexpr int callers = 4;

    Descriptor socket_;
};

}  // namespace kestro
