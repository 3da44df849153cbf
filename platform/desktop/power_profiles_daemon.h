#pragma once

#include "core/platform/power_mode_service.h"

#include <QDBusMessage>
#include <QString>
#include <QVariant>

#include <array>

namespace kestro {

/// The bus interface of power-profiles-daemon, which tuned-ppd implements, too
/// (org.freedesktop.UPower.PowerProfiles.xml).

struct PowerProfilesDaemon {
    const char* service;  ///< also the name of its interface
    const char* path;
};

/// Newest name first.
inline constexpr std::array<PowerProfilesDaemon, 2> powerProfilesDaemons{{
    {"org.freedesktop.UPower.PowerProfiles", "/org/freedesktop/UPower/PowerProfiles"},
    {"net.hadess.PowerProfiles", "/net/hadess/PowerProfiles"},
}};

inline constexpr auto propertiesInterface = "org.freedesktop.DBus.Properties";
inline const QString activeProfileProperty = QStringLiteral("ActiveProfile");
inline const QString offeredProfilesProperty = QStringLiteral("Profiles");

/// A call to the daemon's properties, with its interface as the first argument. Starts no service.
QDBusMessage propertiesCall(const QString& service, const char* member);

/// The modes in the value of `Profiles`, an array of dictionaries with the name under "Profile". Anything else
/// counts as all modes.
std::array<bool, 3> offeredModes(const QVariant& profiles);

/// Why a switch did not happen, given the reply to it.
PowerModeConditions::Failure switchFailure(const QDBusMessage& reply);

}  // namespace kestro
