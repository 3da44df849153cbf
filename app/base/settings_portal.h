#pragma once

#include <QDBusMessage>
#include <QString>
#include <QVariant>

namespace kestro::settings_portal {

/// Where the desktop tells its settings to every program: org.freedesktop.portal.Settings.
inline const QString service = QStringLiteral("org.freedesktop.portal.Desktop");
inline const QString path = QStringLiteral("/org/freedesktop/portal/desktop");
inline const QString interface = QStringLiteral("org.freedesktop.portal.Settings");
inline const QString appearanceArea = QStringLiteral("org.freedesktop.appearance");

/// A question for one setting; its answer has the signature "v". Starts no service.
QDBusMessage readCall(const QString& area, const QString& key);

/// A setting's value, which the portal wraps once or twice, depending on its version.
QVariant unwrapped(QVariant value);

}  // namespace kestro::settings_portal
