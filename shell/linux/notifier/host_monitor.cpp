#include "shell/linux/notifier/host_monitor.h"

#include "shell/linux/notifier/watcher_reply.h"
#include "shell/linux/when_answered.h"

#include <QDBusMessage>
#include <QFile>

#include <utility>

namespace kestro {

namespace {

/// Connections are process-wide by name, so each monitor needs its own.
QString uniqueConnectionName() {
    static int count = 0;
    return QStringLiteral("kestro-status-hosts-%1").arg(++count);
}

QString kernelProcessName(uint pid) {
    constexpr qint64 longestName = 64;
    QFile file(QStringLiteral("/proc/%1/comm").arg(pid));
    if (!file.open(QIODevice::ReadOnly)) {
        return {};
    }
    return QString::fromUtf8(file.read(longestName)).trimmed();
}

QDBusMessage busCall(const QString& method, const QVariant& argument) {
    QDBusMessage message = QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.DBus"),
                                                          QStringLiteral("/org/freedesktop/DBus"),
                                                          QStringLiteral("org.freedesktop.DBus"), method);
    message << argument;
    return message;
}

}  // namespace

NotifierEnvironment NotifierEnvironment::current() {
    return {{},
            QString::fromLocal8Bit(qgetenv("XDG_CURRENT_DESKTOP")).split(QLatin1Char(':'), Qt::SkipEmptyParts),
            kernelProcessName};
}

QDBusConnection NotifierEnvironment::connect(const QString& name) const {
    return busAddress.isEmpty() ? QDBusConnection::connectToBus(QDBusConnection::SessionBus, name)
                                : QDBusConnection::connectToBus(busAddress, name);
}

HostMonitor::HostMonitor(NotifierEnvironment environment)
    : environment_(std::move(environment)), connection_(environment_.connect(uniqueConnectionName())) {
    if (!connection_.isConnected()) {
        state_ = State::absent;
        return;
    }
    retry_.setSingleShot(true);
    arrival_.setSingleShot(true);
    QObject::connect(&retry_, &QTimer::timeout, this, &HostMonitor::askForHost);
    QObject::connect(&arrival_, &QTimer::timeout, this, &HostMonitor::hostArrived);
    serviceWatcher_.setConnection(connection_);
    serviceWatcher_.setWatchMode(QDBusServiceWatcher::WatchForOwnerChange);
    serviceWatcher_.addWatchedService(watcherService());
    QObject::connect(&serviceWatcher_, &QDBusServiceWatcher::serviceOwnerChanged, this,
                     [this](const QString&, const QString&, const QString& owner) { onOwnerChanged(owner); });
    connection_.connect(watcherService(), watcherPath(), watcherService(),
                        QStringLiteral("StatusNotifierHostRegistered"), this, SLOT(onHostRegistered()));
    connection_.connect(watcherService(), watcherPath(), watcherService(),
                        QStringLiteral("StatusNotifierHostUnregistered"), this, SLOT(askForHost()));
    connection_.connect(QString(), QStringLiteral("/org/freedesktop/DBus/Local"),
                        QStringLiteral("org.freedesktop.DBus.Local"), QStringLiteral("Disconnected"), this,
                        SLOT(onDisconnected()));

    whenAnswered(
        connection_.asyncCall(busCall(QStringLiteral("GetNameOwner"), watcherService())), this,
        [this](const QDBusMessage& reply) {
            // An owner change that arrived first is newer than this reply. Items created so far have found this
            // owner themselves.
            if (owner_.isEmpty() && state_ == State::unknown) {
                setOwner(isReply(reply, QLatin1StringView("s")) ? reply.arguments().at(0).toString() : QString());
            }
        });
}

HostMonitor::~HostMonitor() {
    QDBusConnection::disconnectFromBus(connection_.name());
}

void HostMonitor::onOwnerChanged(const QString& owner) {
    setOwner(owner);
    if (!owner.isEmpty()) {
        announceArrival();
    }
}

void HostMonitor::setOwner(const QString& owner) {
    owner_ = owner;
    // A question to the previous owner is void.
    ++question_;
    isAsking_ = false;
    asksAgain_ = false;
    retry_.stop();
    if (owner.isEmpty()) {
        arrival_.stop();
        setHostProcess({});
        setState(State::absent);
        return;
    }
    identify(owner);
    askForHost();
}

void HostMonitor::announceArrival() {
    // From a timer, so that any number of signals in one turn registers each item once.
    if (!arrival_.isActive()) {
        arrival_.start(0);
    }
}

void HostMonitor::onHostRegistered() {
    announceArrival();
    askForHost();
}

void HostMonitor::onDisconnected() {
    onOwnerChanged({});
}

void HostMonitor::askForHost() {
    if (isAsking_) {
        asksAgain_ = true;
        return;
    }
    retry_.stop();
    isAsking_ = true;
    QDBusMessage get = QDBusMessage::createMethodCall(
        watcherService(), watcherPath(), QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    get << watcherService() << QStringLiteral("IsStatusNotifierHostRegistered");
    get.setAutoStartService(false);
    const auto call = connection_.asyncCall(get, static_cast<int>(environment_.patience.count()));
    whenAnswered(call, this, [this, question = ++question_](const QDBusMessage& reply) {
        if (question == question_) {
            isAsking_ = false;
            answered(reply);
        }
    });
}

void HostMonitor::answered(const QDBusMessage& reply) {
    const bool asksAgain = std::exchange(asksAgain_, false);
    if (owner_.isEmpty()) {
        return;
    }
    if (watcher_reply::isTimeout(reply)) {
        // A watcher that does not reply shows no items. It may only be slow, so ask again, but not at once: the
        // error may come without a wait.
        setState(State::absent);
        retry_.start(environment_.retryPause);
        return;
    }
    setState(watcher_reply::reportsHost(reply) ? State::present : State::absent);
    if (asksAgain) {
        askForHost();
    }
}

void HostMonitor::identify(const QString& owner) {
    whenAnswered(
        connection_.asyncCall(busCall(QStringLiteral("GetConnectionUnixProcessID"), owner)), this,
        [this, owner](const QDBusMessage& reply) {
            if (owner != owner_) {
                return;
            }
            const bool isKnown = isReply(reply, QLatin1StringView("u"));
            setHostProcess(isKnown ? environment_.processName(reply.arguments().at(0).toUInt()) : QString());
        });
}

void HostMonitor::setState(State state) {
    if (state_ == state) {
        return;
    }
    state_ = state;
    Q_EMIT stateChanged();
}

void HostMonitor::setHostProcess(const QString& process) {
    hostProcess_ = process;
    labels_ = owner_.isEmpty() ? LabelSupport::hidden : labelSupport(process, environment_.desktops);
    Q_EMIT hostIdentified();
}

}  // namespace kestro
