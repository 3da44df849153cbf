#include "tests/support/bus_configuration.h"

#include <QFile>
#include <QUrl>

#include <stdexcept>

namespace kestro {

namespace {

constexpr auto configuration = R"(<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>unix:path=%1</listen>
  <auth>EXTERNAL</auth>
  %2
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
)";

/// In a bus address only letters, digits and a few symbols stand for themselves. They are safe in XML, too.
QString escapedForAddress(const QString& path) {
    return QString::fromLatin1(QUrl::toPercentEncoding(path, "/", "~"));
}

}  // namespace

void writeBusConfiguration(const QString& file, const QString& socket, const QString& services) {
    QFile out(file);
    if (!out.open(QIODevice::WriteOnly)) {
        throw std::runtime_error("cannot write the bus configuration");
    }
    const QString folder = services.isEmpty()
                               ? QString()
                               : QStringLiteral("<servicedir>%1</servicedir>").arg(services.toHtmlEscaped());
    out.write(QString::fromUtf8(configuration).arg(escapedForAddress(socket), folder).toUtf8());
}

}  // namespace kestro
