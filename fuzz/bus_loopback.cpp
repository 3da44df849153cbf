#include "fuzz/bus_loopback.h"

#include <QDBusPendingCallWatcher>
#include <QEventLoop>

#include <cstdlib>
#include <utility>

namespace kestro {

namespace {

const QString nearName = QStringLiteral("near");
const QString echoPath = QStringLiteral("/echo");

}  // namespace

/// Answers a call with its arguments, and keeps the call.
class BusLoopback::Echo final : public QDBusVirtualObject {
public:
    QString introspect(const QString&) const override { return {}; }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
        received = message;
        connection.send(message.createReply(message.arguments()));
        return true;
    }

    std::optional<QDBusMessage> received;
};

BusLoopback& BusLoopback::shared() {
    static BusLoopback loopback;
    return loopback;
}

BusLoopback::BusLoopback() {
    static int count = 1;
    static char name[] = "fuzz";
    static char* arguments[] = {name, nullptr};
    application_ = std::make_unique<QCoreApplication>(count, arguments);
    server_ = std::make_unique<QDBusServer>(QStringLiteral("unix:tmpdir=/tmp"));
    QObject::connect(server_.get(), &QDBusServer::newConnection, server_.get(),
                     [this](const QDBusConnection& connection) { far_ = connection; });
    near_ = QDBusConnection::connectToPeer(server_->address(), nearName);
    while (!far_) {
        if (!near_->isConnected()) {
            std::abort();
        }
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    echo_ = std::make_unique<Echo>();
    far_->registerVirtualObject(echoPath, echo_.get());
}

BusLoopback::~BusLoopback() {
    far_->unregisterObject(echoPath);
    far_.reset();
    near_.reset();
    QDBusConnection::disconnectFromPeer(nearName);
}

QDBusMessage BusLoopback::call(const QDBusMessage& message) const {
    const QDBusPendingCallWatcher pending(near_->asyncCall(message));
    while (!pending.isFinished()) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return pending.reply();
}

std::optional<BusLoopback::Received> BusLoopback::receive(const QVariantList& arguments) {
    auto message =
        QDBusMessage::createMethodCall(QString(), echoPath, QStringLiteral("fuzz.Echo"), QStringLiteral("Echo"));
    message.setArguments(arguments);
    echo_->received.reset();
    const QDBusMessage reply = call(message);
    if (!echo_->received) {
        return std::nullopt;
    }
    return Received{*std::exchange(echo_->received, {}), reply};
}

}  // namespace kestro
