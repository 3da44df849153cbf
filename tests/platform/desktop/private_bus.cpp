#include "tests/platform/desktop/private_bus.h"

#include <QFile>

#include <stdexcept>

namespace kestro::testing_support {

namespace {

constexpr auto configuration = R"(<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>unix:path=%1/bus</listen>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
)";

}  // namespace

PrivateBus::PrivateBus() {
    const QString file = directory_.filePath(QStringLiteral("bus.conf"));
    QFile out(file);
    if (!out.open(QIODevice::WriteOnly)) {
        throw std::runtime_error("cannot write the bus configuration");
    }
    out.write(QString::fromUtf8(configuration).arg(directory_.path()).toUtf8());
    out.close();
    daemon_.setStandardErrorFile(QProcess::nullDevice());
    daemon_.start(QStringLiteral("dbus-daemon"),
                  {QStringLiteral("--config-file=") + file, QStringLiteral("--nofork"),
                   QStringLiteral("--nopidfile"), QStringLiteral("--print-address=1")});
    while (!daemon_.canReadLine()) {
        if (!daemon_.waitForReadyRead(20'000)) {
            throw std::runtime_error("dbus-daemon does not start");
        }
    }
    address_ = QString::fromUtf8(daemon_.readLine()).trimmed();
}

PrivateBus::~PrivateBus() {
    for (const auto& name : names_) {
        QDBusConnection::disconnectFromBus(name);
    }
    kill();
}

QDBusConnection PrivateBus::connect() {
    static int count = 0;
    names_.push_back(QStringLiteral("private-bus-%1").arg(++count));
    auto connection = QDBusConnection::connectToBus(address_, names_.back());
    if (!connection.isConnected()) {
        throw std::runtime_error("cannot connect to the private bus");
    }
    return connection;
}

void PrivateBus::kill() {
    daemon_.kill();
    daemon_.waitForFinished();
}

}  // namespace kestro::testing_support
