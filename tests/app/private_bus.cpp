#include "tests/app/private_bus.h"

#include <QCoreApplication>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QFile>
#include <QTimer>

namespace kestro {

namespace {

constexpr int patience = 10'000;

const char* const configuration = R"(<busconfig>
  <type>session</type>
  <listen>unix:tmpdir=/tmp</listen>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>)";

QString nextConnectionName() {
    static int count = 0;
    return QStringLiteral("test-client-%1").arg(++count);
}

}  // namespace

bool waitUntil(const std::function<bool()>& condition) {
    const QDeadlineTimer deadline(patience);
    QTimer waker;
    waker.setSingleShot(true);
    waker.start(patience);
    while (!condition()) {
        if (deadline.hasExpired()) {
            return false;
        }
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
    }
    return true;
}

PrivateBus::PrivateBus() {
    QFile file(folder_.filePath(QStringLiteral("bus.conf")));
    if (file.open(QIODevice::WriteOnly)) {
        file.write(configuration);
        file.close();
    }
    daemon_.start(QStringLiteral("dbus-daemon"), {QStringLiteral("--nofork"), QStringLiteral("--print-address"),
                                                  QStringLiteral("--config-file=") + file.fileName()});
    if (daemon_.waitForReadyRead(patience)) {
        address_ = QString::fromUtf8(daemon_.readLine()).trimmed();
    }
}

PrivateBus::~PrivateBus() {
    kill();
}

void PrivateBus::kill() {
    daemon_.kill();
    daemon_.waitForFinished(patience);
}

BusClient::BusClient(const QString& address)
    : connection_(QDBusConnection::connectToBus(address, nextConnectionName())) {}

BusClient::~BusClient() {
    QDBusConnection::disconnectFromBus(connection_.name());
}

QDBusMessage BusClient::call(const QString& service, const QString& path, const QString& interface,
                             const QString& method, const QVariantList& arguments) {
    QDBusMessage message = QDBusMessage::createMethodCall(service, path, interface, method);
    message.setArguments(arguments);
    // Only a watcher's signal wakes the event loop when the answer arrives.
    const QDBusPendingCallWatcher pending(connection_.asyncCall(message));
    waitUntil([&] { return pending.isFinished(); });
    return pending.reply();
}

QVariant BusClient::property(const QString& service, const QString& path, const QString& interface,
                             const QString& name) {
    const QDBusMessage reply = call(service, path, QStringLiteral("org.freedesktop.DBus.Properties"),
                                    QStringLiteral("Get"), {interface, name});
    if (reply.type() != QDBusMessage::ReplyMessage) {
        return {};
    }
    return reply.arguments().at(0).value<QDBusVariant>().variant();
}

}  // namespace kestro
