#include "platform/desktop/wayland_lock.h"

#include <QDir>
#include <QFile>

#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <utility>

namespace kestro {

namespace {

/// Reads per turn of the event loop; more than a compositor has to say at once.
constexpr int mostReads = 64;

/// The contents of the surface, for the compositor to map.
Descriptor transparentPixel() {
    Descriptor file(::memfd_create("kestro-pixel", MFD_CLOEXEC));
    if (file.isOpen() && ::ftruncate(file.get(), WaylandIdleInhibition::pixelSize) != 0) {
        file.close();
    }
    return file;
}

/// Sends all bytes at once, with a descriptor unless it is -1. False: the socket has no room, or is closed.
bool sendWhole(int socket, std::string& bytes, int descriptor) {
    iovec piece{bytes.data(), bytes.size()};
    msghdr message{};
    message.msg_iov = &piece;
    message.msg_iovlen = 1;
    alignas(cmsghdr) std::array<char, CMSG_SPACE(sizeof descriptor)> control{};
    if (descriptor >= 0) {
        message.msg_control = control.data();
        message.msg_controllen = control.size();
        cmsghdr* const header = CMSG_FIRSTHDR(&message);
        header->cmsg_level = SOL_SOCKET;
        header->cmsg_type = SCM_RIGHTS;
        header->cmsg_len = CMSG_LEN(sizeof descriptor);
        std::memcpy(CMSG_DATA(header), &descriptor, sizeof descriptor);
    }
    ssize_t sent = 0;
    do {
        sent = ::sendmsg(socket, &message, MSG_DONTWAIT | MSG_NOSIGNAL);
    } while (sent < 0 && errno == EINTR);
    return sent == static_cast<ssize_t>(bytes.size());
}

}  // namespace

WaylandLock::WaylandLock(const QString& socket, std::chrono::milliseconds patience, std::function<void()> onChange)
    : onChange_(std::move(onChange)) {
    patience_.setSingleShot(true);
    patience_.setInterval(patience);
    QObject::connect(&patience_, &QTimer::timeout, &patience_, [this] {
        close();
        settle();
    });
    isPolling_ = true;
    connect(socket);
    send();
    settle();
    isPolling_ = false;
}

QString WaylandLock::socketOfSession() {
    const QString name = qEnvironmentVariable("WAYLAND_DISPLAY");
    const QString folder = qEnvironmentVariable("XDG_RUNTIME_DIR");
    if (name.isEmpty() || QDir::isAbsolutePath(name)) {
        return name;
    }
    return folder.isEmpty() ? QString() : folder + QLatin1Char('/') + name;
}

void WaylandLock::connect(const QString& socket) {
    const QByteArray path = QFile::encodeName(socket);
    sockaddr_un address{};
    if (static_cast<std::size_t>(path.size()) >= sizeof address.sun_path) {
        return;
    }
    address.sun_family = AF_UNIX;
    std::memcpy(address.sun_path, path.constData(), static_cast<std::size_t>(path.size()));
    socket_ = Descriptor(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    if (!socket_.isOpen()) {
        return;
    }
    // Of a local socket this succeeds or fails at once, also while the compositor does not accept.
    if (::connect(socket_.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
        socket_.close();
        return;
    }
    notifier_ = std::make_unique<QSocketNotifier>(socket_.get(), QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, &patience_, [this] {
        exchange();
        settle();
    });
}

void WaylandLock::poll() {
    isPolling_ = true;
    exchange();
    settle();
    isPolling_ = false;
}

void WaylandLock::exchange() {
    std::array<char, 4096> bytes{};
    for (int reads = 0; reads < mostReads && socket_.isOpen(); ++reads) {
        const ssize_t count = ::recv(socket_.get(), bytes.data(), bytes.size(), MSG_DONTWAIT);
        if (count > 0) {
            inhibition_.receive({bytes.data(), static_cast<std::size_t>(count)});
            send();
        } else if (count == 0 || (errno != EAGAIN && errno != EINTR)) {
            close();
        } else if (errno == EAGAIN) {
            return;
        }
    }
}

void WaylandLock::send() {
    auto requests = inhibition_.takeRequests();
    const Descriptor pixel = requests.needsPixel ? transparentPixel() : Descriptor();
    const bool isSent =
        requests.bytes.empty() || (socket_.isOpen() && sendWhole(socket_.get(), requests.bytes, pixel.get()));
    if (!isSent || inhibition_.isOver()) {
        close();
    }
}

void WaylandLock::close() {
    if (notifier_) {
        notifier_->setEnabled(false);
    }
    socket_.close();
}

void WaylandLock::settle() {
    const LockState state = socket_.isOpen() ? inhibition_.state() : LockState::refused;
    if (state != LockState::asking) {
        patience_.stop();
    } else if (!patience_.isActive()) {
        patience_.start();
    }
    if (std::exchange(state_, state) != state && !isPolling_) {
        const auto handler = onChange_;  // it may destroy this object
        handler();
    }
}

}  // namespace kestro
