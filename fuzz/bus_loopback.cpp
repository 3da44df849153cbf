#include "fuzz/bus_loopback.h"

#include "fuzz/requirement.h"

#include <QAbstractEventDispatcher>
#include <QEventLoop>

#include <utility>

namespace kestro {

namespace {

const QString connectionName = QStringLiteral("loopback");
const QString senderPath = QStringLiteral("/sender");

/// Without a screen, and with the toolkit's own event loop, which costs less than the desktop's.
std::unique_ptr<QGuiApplication> makeApplication() {
    static int count = 1;
    static char name[] = "fuzz";
    static char* arguments[] = {name, nullptr};
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_NO_GLIB", "1");
    QGuiApplication::setDesktopSettingsAware(false);
    return std::make_unique<QGuiApplication>(count, arguments);
}

}  // namespace

/// Replies to every call with the arguments that were set.
class BusLoopback::Sender final : public QDBusVirtualObject {
public:
    QString introspect(const QString&) const override { return {}; }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
        connection.send(message.createReply(std::exchange(arguments, {})));
        return true;
    }

    QVariantList arguments;
};

BusLoopback& BusLoopback::shared() {
    static BusLoopback loopback;
    return loopback;
}

BusLoopback::BusLoopback()
    : application_(makeApplication()),
      connection_(QDBusConnection::connectToBus(busAddress(), connectionName)),
      sender_(std::make_unique<Sender>()) {
    require(connection_.isConnected() && connection_.registerVirtualObject(senderPath, sender_.get()));
}

BusLoopback::~BusLoopback() {
    connection_.unregisterObject(senderPath);
    connection_ = QDBusConnection(QString());
    QDBusConnection::disconnectFromBus(connectionName);
}

QDBusMessage BusLoopback::call(const QDBusConnection& connection, const QString& path, const QString& interface,
                               const QString& method, const QVariantList& arguments) {
    auto message = QDBusMessage::createMethodCall(connection.baseService(), path, interface, method);
    message.setArguments(arguments);
    return connection.call(message);
}

QDBusMessage BusLoopback::receive(const QVariantList& arguments) {
    sender_->arguments = arguments;
    return call(connection_, senderPath, QString(), QStringLiteral("Send"), {});
}

void BusLoopback::handleEvents() {
    while (QAbstractEventDispatcher::instance()->processEvents(QEventLoop::AllEvents)) {
    }
}

}  // namespace kestro
