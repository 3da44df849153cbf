#include "shell/linux/settings_portal.h"

#include <QDBusVariant>

namespace kestro::settings_portal {

QDBusMessage readCall(const QString& area, const QString& key) {
    QDBusMessage read = QDBusMessage::createMethodCall(service, path, interface, QStringLiteral("Read"));
    read.setArguments({area, key});
    read.setAutoStartService(false);
    return read;
}

QVariant unwrapped(QVariant value) {
    while (value.metaType() == QMetaType::fromType<QDBusVariant>()) {
        value = value.value<QDBusVariant>().variant();
    }
    return value;
}

}  // namespace kestro::settings_portal
