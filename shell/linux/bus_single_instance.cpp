#include "shell/linux/bus_single_instance.h"

#include <QByteArray>
#include <QDBusConnectionInterface>
#include <QDBusReply>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <utility>

namespace kestro {

namespace {

/// An address in the abstract namespace of unix(7): the path starts with a zero byte and names no file.
struct AbstractAddress {
    sockaddr_un address{};
    socklen_t length = 0;

    explicit AbstractAddress(const QString& display) {
        const QByteArray name = QByteArrayLiteral("kestro-") +
                                QByteArray::number(static_cast<qulonglong>(getuid())) + '-' + display.toUtf8();
        address.sun_family = AF_UNIX;
        const std::size_t count = std::min(static_cast<std::size_t>(name.size()), sizeof address.sun_path - 1);
        std::memcpy(address.sun_path + 1, name.constData(), count);
        length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + count);
    }

    const sockaddr* get() const { return reinterpret_cast<const sockaddr*>(&address); }
};

int openSocket() {
    return socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
}

bool belongsToThisUser(int connection) {
    ucred peer{};
    socklen_t length = sizeof peer;
    return getsockopt(connection, SOL_SOCKET, SO_PEERCRED, &peer, &length) == 0 && peer.uid == getuid();
}

/// Notifies the process that owns the address by connecting to it. False: no process of this user owns it.
bool callOwner(const AbstractAddress& address) {
    const int connection = openSocket();
    const bool isAnswered = connection >= 0 && connect(connection, address.get(), address.length) == 0 &&
                            belongsToThisUser(connection);
    if (connection >= 0) {
        close(connection);
    }
    return isAnswered;
}

}  // namespace

BusSingleInstance::BusSingleInstance(const QDBusConnection& bus, const QString& display,
                                     std::function<void()> onSecondStart)
    : bus_(bus), onSecondStart_(std::move(onSecondStart)) {
    isFirst_ = bus_.isConnected() ? claimBusName() : claimSocket(display);
}

BusSingleInstance::~BusSingleInstance() {
    BusSingleInstance::release();
}

QString BusSingleInstance::currentDisplay() {
    return qEnvironmentVariable("WAYLAND_DISPLAY") + QLatin1Char('|') + qEnvironmentVariable("DISPLAY");
}

void BusSingleInstance::callFirst(const std::function<void()>& post) {
    if (!bus_.isConnected()) {
        return;  // the first process was notified when this one found it
    }
    post();
    // The bus handles messages in order: a reply to a later one proves that the earlier one has arrived.
    bus_.interface()->isServiceRegistered(QLatin1StringView(busName));
}

void BusSingleInstance::release() {
    notifier_.reset();
    if (socket_ >= 0) {
        close(std::exchange(socket_, -1));
    }
    if (std::exchange(isFirst_, false) && bus_.isConnected()) {
        bus_.interface()->unregisterService(QLatin1StringView(busName));
    }
}

bool BusSingleInstance::claimBusName() {
    const QDBusReply<QDBusConnectionInterface::RegisterServiceReply> reply =
        bus_.interface()->registerService(QLatin1StringView(busName), QDBusConnectionInterface::DontQueueService);
    // A bus that does not answer must not keep the program from running.
    return !reply.isValid() || reply.value() != QDBusConnectionInterface::ServiceNotRegistered;
}

bool BusSingleInstance::claimSocket(const QString& display) {
    const AbstractAddress address(display);
    socket_ = openSocket();
    if (socket_ < 0) {
        return true;
    }
    if (bind(socket_, address.get(), address.length) != 0) {
        return errno != EADDRINUSE || !callOwner(address);
    }
    if (listen(socket_, 4) == 0) {
        notifier_ = std::make_unique<QSocketNotifier>(socket_, QSocketNotifier::Read);
        QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(),
                         [this] { acceptCallers(); });
    }
    return true;
}

void BusSingleInstance::acceptCallers() {
    bool isCalled = false;
    for (int caller = 0; (caller = accept4(socket_, nullptr, nullptr, SOCK_CLOEXEC)) >= 0; close(caller)) {
        isCalled = isCalled || belongsToThisUser(caller);
    }
    if (isCalled) {
        onSecondStart_();
    }
}

}  // namespace kestro
