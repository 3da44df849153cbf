#include "platform/desktop/power_profiles_daemon.h"

#include "platform/desktop/power_profile.h"

#include <QDBusArgument>
#include <QVariantMap>

#include <algorithm>

namespace kestro {

QDBusMessage propertiesCall(const QString& service, const char* member) {
    const auto* names =
        std::ranges::find(powerProfilesDaemons, service.toStdString(), &PowerProfilesDaemon::service);
    auto message =
        QDBusMessage::createMethodCall(service, QString::fromLatin1(names->path),
                                       QString::fromLatin1(propertiesInterface), QString::fromLatin1(member));
    message.setAutoStartService(false);
    return message << service;
}

std::array<bool, 3> offeredModes(const QVariant& profiles) {
    if (!profiles.canConvert<QDBusArgument>()) {
        return {true, true, true};
    }
    const auto list = profiles.value<QDBusArgument>();
    if (list.currentSignature() != QLatin1String("aa{sv}")) {
        return {true, true, true};
    }
    std::array<bool, 3> offered{};
    list.beginArray();
    while (!list.atEnd()) {
        QVariantMap entry;
        list >> entry;
        const auto name = entry.value(QStringLiteral("Profile")).toString().toStdString();
        if (const auto profile = profileFromBusName(name)) {
            offered.at(static_cast<std::size_t>(*profile)) = true;
        }
    }
    list.endArray();
    return offered;
}

PowerModeConditions::Failure switchFailure(const QDBusMessage& reply) {
    using enum PowerModeConditions::Failure;
    if (reply.type() != QDBusMessage::ErrorMessage) {
        return reverted;
    }
    const QString error = reply.errorName();
    const bool isDenied = error.endsWith(QLatin1String(".AccessDenied")) ||
                          error.endsWith(QLatin1String(".AuthFailed")) ||
                          error.endsWith(QLatin1String(".InteractiveAuthorizationRequired")) ||
                          reply.errorMessage() == QLatin1String("Unauthorized");  // tuned-ppd
    return isDenied ? denied : rejected;
}

}  // namespace kestro
