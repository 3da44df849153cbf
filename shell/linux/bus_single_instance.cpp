#include "shell/linux/bus_single_instance.h"

#include "shell/linux/when_answered.h"

#include <QByteArray>
#include <QDBusConnectionInterface>
#include <QDBusReply>
#include <QEventLoop>
#include <QTimer>

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

const char* const description = R"xml(
<interface name="kestro.Kestro">
  <method name="ShowDashboard"/>
</interface>
)xml";

const QString objectPath = QStringLiteral("/kestro/Kestro");
const QString showDashboard = QStringLiteral("ShowDashboard");

/// How often a later start checks whether the first one has gone.
constexpr std::chrono::milliseconds retryInterval(20);

/// How many callers are accepted at once; others wait for the next turn of the event loop.
constexpr int callersAtOnce = 16;

QString instanceName() {
    return QString::fromLatin1(BusSingleInstance::busName);
}

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

}  // namespace

/// A request to the first process. It is over once that process has answered, refused or ended.
class BusSingleInstance::Call {
public:
    Call(const QDBusConnection& bus, const std::function<void()>& onAnswer) {
        QDBusMessage message =
            QDBusMessage::createMethodCall(instanceName(), objectPath, instanceName(), showDashboard);
        message.setAutoStartService(false);
        whenAnswered(bus.asyncCall(message), &context_, [this, onAnswer](const QDBusMessage& reply) {
            isOver_ = true;
            if (reply.type() == QDBusMessage::ReplyMessage) {
                onAnswer();
            }
        });
    }

    Call(const AbstractAddress& address, const std::function<void()>& onAnswer) : connection_(openSocket()) {
        if (connection_ < 0 || connect(connection_, address.get(), address.length) != 0) {
            isOver_ = true;
            return;
        }
        reachesAnotherUser_ = !belongsToThisUser(connection_);
        notifier_ = std::make_unique<QSocketNotifier>(connection_, QSocketNotifier::Read);
        QObject::connect(notifier_.get(), &QSocketNotifier::activated, &context_, [this, onAnswer] {
            char answer = 0;
            const ssize_t length = read(connection_, &answer, 1);
            notifier_->setEnabled(false);
            isOver_ = true;
            if (length == 1) {
                onAnswer();
            }
        });
    }

    ~Call() {
        notifier_.reset();
        if (connection_ >= 0) {
            close(connection_);
        }
    }
    Call(const Call&) = delete;
    Call& operator=(const Call&) = delete;

    bool isOver() const { return isOver_; }

    /// Whether a process of another user has taken the place, which then means nothing.
    bool reachesAnotherUser() const { return reachesAnotherUser_; }

private:
    int connection_ = -1;
    std::unique_ptr<QSocketNotifier> notifier_;
    bool isOver_ = false;
    bool reachesAnotherUser_ = false;
    QObject context_;
};

BusSingleInstance::BusSingleInstance(const QDBusConnection& bus, const QString& display, CallHandler onCall,
                                     std::chrono::milliseconds patience)
    : bus_(bus),
      onCall_(std::move(onCall)),
      object_(objectPath, instanceName(), QString::fromLatin1(description)) {
    object_.addMethod(showDashboard, {}, [this](const QVariantList&) -> BusReply {
        return onCall_() ? BusReply(QVariantList{}) : BusReply(BusRefusal{QStringLiteral("ending")});
    });
    claimOrCall(display, patience);
}

void BusSingleInstance::claimOrCall(const QString& display, std::chrono::milliseconds patience) {
    QEventLoop loop;
    std::unique_ptr<Call> call;
    const auto attempt = [&] {
        isFirst_ = claim(display);
        if (!isFirst_ && (!call || call->isOver())) {
            call = callFirst(display, [&loop] { loop.quit(); });
            isFirst_ = call->reachesAnotherUser();
        }
        if (isFirst_) {
            loop.quit();
        }
    };
    attempt();
    if (isFirst_) {
        return;
    }
    // The first process may be ending. Then it does not answer, and its place is free in a moment.
    QTimer retry;
    QObject::connect(&retry, &QTimer::timeout, &loop, attempt);
    retry.start(retryInterval);
    QTimer::singleShot(patience, &loop, &QEventLoop::quit);
    loop.exec();
}

BusSingleInstance::~BusSingleInstance() {
    BusSingleInstance::release();
}

QString BusSingleInstance::currentDisplay() {
    return qEnvironmentVariable("WAYLAND_DISPLAY") + QLatin1Char('|') + qEnvironmentVariable("DISPLAY");
}

void BusSingleInstance::release() {
    notifier_.reset();
    if (socket_ >= 0) {
        close(std::exchange(socket_, -1));
    }
    object_.withdraw();
    if (std::exchange(isFirst_, false) && bus_.isConnected()) {
        bus_.interface()->unregisterService(instanceName());
    }
}

std::unique_ptr<BusSingleInstance::Call> BusSingleInstance::callFirst(
    const QString& display, const std::function<void()>& onAnswer) const {
    return bus_.isConnected() ? std::make_unique<Call>(bus_, onAnswer)
                              : std::make_unique<Call>(AbstractAddress(display), onAnswer);
}

bool BusSingleInstance::claim(const QString& display) {
    return bus_.isConnected() ? claimBusName() : claimSocket(display);
}

bool BusSingleInstance::claimBusName() {
    // Before the name, so that no caller finds the name without the object.
    object_.publish(bus_);
    const QDBusReply<QDBusConnectionInterface::RegisterServiceReply> reply =
        bus_.interface()->registerService(instanceName(), QDBusConnectionInterface::DontQueueService);
    // A bus that does not answer must not keep the program from running.
    const bool isOurs = !reply.isValid() || reply.value() != QDBusConnectionInterface::ServiceNotRegistered;
    if (!isOurs) {
        object_.withdraw();
    }
    return isOurs;
}

bool BusSingleInstance::claimSocket(const QString& display) {
    const AbstractAddress address(display);
    const int candidate = openSocket();
    if (candidate < 0) {
        return true;
    }
    if (bind(candidate, address.get(), address.length) != 0) {
        const bool isTaken = errno == EADDRINUSE;
        close(candidate);
        return !isTaken;
    }
    socket_ = candidate;
    if (listen(socket_, callersAtOnce) == 0) {
        notifier_ = std::make_unique<QSocketNotifier>(socket_, QSocketNotifier::Read);
        QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(),
                         [this] { acceptCallers(); });
    }
    return true;
}

void BusSingleInstance::acceptCallers() {
    for (int count = 0; count < callersAtOnce; ++count) {
        const int caller = accept4(socket_, nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
        if (caller < 0) {
            return;
        }
        if (belongsToThisUser(caller) && onCall_()) {
            const char answer = 1;
            [[maybe_unused]] const ssize_t written = send(caller, &answer, 1, MSG_NOSIGNAL);
        }
        close(caller);
    }
}

}  // namespace kestro
