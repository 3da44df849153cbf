#pragma once

#include <QDBusMessage>
#include <QString>
#include <QVariant>

namespace kestro::settings_portal {

/// The portal through which the desktop publishes its settings: org.freedesktop.portal.Settings.
inline const QString service = QStringLiteral("org.freedesktop.portal.Desktop");
inline const QString path = QStringLiteral("/org/freedesktop/portal/desktop");
inline const QString interface = QStringLiteral("org.freedesktop.portal.Settings");
inline const QString appearanceArea = QStringLiteral("org.freedesktop.appearance");

/// A call that reads one setting; its reply has the signature "v". Starts no service.
QDBusMessage readCall(const QString& area, const QString& key);

/// A setting's value, which the portal wraps once or twice, depending on its version.
QVariant unwrapped(QVariant value);

}  // namespace kestro::settings_portal
