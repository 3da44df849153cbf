#pragma once

#include "platform/posix/descriptor.h"
#include "tests/platform/desktop/fake_compositor.h"

#include <QSocketNotifier>

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace kestro::test {

/// A compositor at a socket, for one client at a time. It runs in the event loop of its thread.
class CompositorSocket {
public:
    explicit CompositorSocket(std::string path) : path_(std::move(path)) {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        if (path_.size() >= sizeof address.sun_path) {
            throw std::runtime_error("too long for a socket: " + path_);
        }
        std::memcpy(address.sun_path, path_.data(), path_.size());
        if (::bind(listener_.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 ||
            ::listen(listener_.get(), 4) != 0) {
            throw std::runtime_error("cannot listen at " + path_);
        }
        QObject::connect(&arrivals_, &QSocketNotifier::activated, &arrivals_, [this] { accept(); });
    }
    ~CompositorSocket() { ::unlink(path_.c_str()); }
    CompositorSocket(const CompositorSocket&) = delete;
    CompositorSocket& operator=(const CompositorSocket&) = delete;

    /// The compositor that the latest client talks to; nullptr: none has come.
    FakeCompositor* compositor() { return compositor_.get(); }

    bool hasClient() const { return client_.isOpen(); }
    bool isInhibited() const { return hasClient() && compositor_->isInhibited(); }
    int clients() const { return clients_; }

    /// The contents of the client's buffer.
    const std::string& pixel() const { return pixel_; }

    void send(const std::string& events) const {
        if (::send(client_.get(), events.data(), events.size(), MSG_NOSIGNAL) !=
            static_cast<ssize_t>(events.size())) {
            throw std::runtime_error("the client does not read");
        }
    }

    /// Offered to the clients to come.
    std::vector<std::string> offered = FakeCompositor().offered;

private:
    void accept() {
        client_ = Descriptor(::accept4(listener_.get(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK));
        ++clients_;
        compositor_ = std::make_unique<FakeCompositor>();
        compositor_->offered = offered;
        requests_ = std::make_unique<QSocketNotifier>(client_.get(), QSocketNotifier::Read);
        QObject::connect(requests_.get(), &QSocketNotifier::activated, &arrivals_, [this] { receive(); });
    }

    void receive() {
        std::array<char, 4096> bytes{};
        iovec piece{bytes.data(), bytes.size()};
        alignas(cmsghdr) std::array<char, CMSG_SPACE(sizeof(int))> control{};
        msghdr message{};
        message.msg_iov = &piece;
        message.msg_iovlen = 1;
        message.msg_control = control.data();
        message.msg_controllen = control.size();
        const ssize_t count = ::recvmsg(client_.get(), &message, MSG_CMSG_CLOEXEC);
        if (const cmsghdr* const header = CMSG_FIRSTHDR(&message)) {
            int descriptor = -1;
            std::memcpy(&descriptor, CMSG_DATA(header), sizeof descriptor);
            keepContents(Descriptor(descriptor));
        }
        if (count > 0) {
            const auto events = compositor_->answer({bytes.data(), static_cast<std::size_t>(count)});
            if (!events.empty()) {
                send(events);
            }
        } else if (count == 0 || errno != EAGAIN) {
            requests_->setEnabled(false);
            client_.close();
        }
    }

    void keepContents(const Descriptor& file) {
        struct stat facts {};
        ::fstat(file.get(), &facts);
        pixel_.resize(static_cast<std::size_t>(facts.st_size));
        if (::pread(file.get(), pixel_.data(), pixel_.size(), 0) != facts.st_size) {
            throw std::runtime_error("the buffer cannot be read");
        }
    }

    const std::string path_;
    Descriptor listener_{::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)};
    QSocketNotifier arrivals_{listener_.get(), QSocketNotifier::Read};
    Descriptor client_;
    std::unique_ptr<QSocketNotifier> requests_;
    std::unique_ptr<FakeCompositor> compositor_;
    std::string pixel_;
    int clients_ = 0;
};

}  // namespace kestro::test
