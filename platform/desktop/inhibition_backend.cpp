#include "platform/desktop/inhibition_backend.h"

#include <QVariantMap>

namespace kestro {

namespace {

struct BackendRow {
    InhibitionBackend backend;
    bool onSystemBus;
    const char* service;
    const char* path;
    const char* interface;
    const char* release;  // nullptr: released by other means
    std::uint32_t displayFlags;
    std::uint32_t systemFlags;
};

// Flags: org.gnome.SessionManager and the portal 8 idle, 4 suspend; PolicyAgent 4 screen settings, which implies
// 1, interrupting the session.
constexpr std::array<BackendRow, inhibitionBackendCount> rows{{
    {InhibitionBackend::gnomeSessionManager, false, "org.gnome.SessionManager", "/org/gnome/SessionManager",
     "org.gnome.SessionManager", "Uninhibit", 8, 4},
    {InhibitionBackend::kdePolicyAgent, false, "org.kde.Solid.PowerManagement.PolicyAgent",
     "/org/kde/Solid/PowerManagement/PolicyAgent", "org.kde.Solid.PowerManagement.PolicyAgent",
     "ReleaseInhibition", 4, 1},
    {InhibitionBackend::freedesktopPowerManagement, false, "org.freedesktop.PowerManagement",
     "/org/freedesktop/PowerManagement/Inhibit", "org.freedesktop.PowerManagement.Inhibit", "UnInhibit", 0, 0},
    {InhibitionBackend::portal, false, "org.freedesktop.portal.Desktop", "/org/freedesktop/portal/desktop",
     "org.freedesktop.portal.Inhibit", nullptr, 8, 4},
    {InhibitionBackend::screenSaver, false, "org.freedesktop.ScreenSaver", "/org/freedesktop/ScreenSaver",
     "org.freedesktop.ScreenSaver", "UnInhibit", 0, 0},
    {InhibitionBackend::logind, true, "org.freedesktop.login1", "/org/freedesktop/login1",
     "org.freedesktop.login1.Manager", nullptr, 0, 0},
}};

constexpr auto applicationName = "Kestro";

const BackendRow& rowOf(InhibitionBackend backend) {
    return rows[static_cast<std::size_t>(backend)];
}

QDBusMessage call(const QString& service, const QString& path, const char* interface, const char* member) {
    auto message =
        QDBusMessage::createMethodCall(service, path, QString::fromLatin1(interface), QString::fromLatin1(member));
    message.setAutoStartService(false);
    return message;
}

/// Every request needs a unique name, or the portal merges them.
QString nextHandleToken() {
    static int count = 0;
    return QStringLiteral("kestro%1").arg(++count);
}

}  // namespace

QString serviceName(InhibitionBackend backend) {
    return QString::fromLatin1(rowOf(backend).service);
}

bool isOnSystemBus(InhibitionBackend backend) {
    return rowOf(backend).onSystemBus;
}

std::array<InhibitionBackend, inhibitionBackendCount> backendOrder(bool displayAndSystem,
                                                                   bool hasFreedesktopPowerManagement) {
    using enum InhibitionBackend;
    if (!displayAndSystem && hasFreedesktopPowerManagement) {
        return {gnomeSessionManager, kdePolicyAgent, logind, portal, screenSaver, freedesktopPowerManagement};
    }
    return {gnomeSessionManager, kdePolicyAgent, freedesktopPowerManagement, portal, screenSaver, logind};
}

bool canInhibit(InhibitionBackend backend, const InhibitionWish& wish) {
    return wish.displayAndSystem ||
           (backend != InhibitionBackend::freedesktopPowerManagement && backend != InhibitionBackend::screenSaver);
}

QDBusMessage inhibitCall(InhibitionBackend backend, const QString& service, const InhibitionWish& wish,
                         bool weakest) {
    const auto& row = rowOf(backend);
    const QString application = QString::fromLatin1(applicationName);
    const std::uint32_t flags = wish.displayAndSystem ? row.displayFlags : row.systemFlags;
    const bool isAddition = backend == InhibitionBackend::kdePolicyAgent;
    auto message =
        call(service, QString::fromLatin1(row.path), row.interface, isAddition ? "AddInhibition" : "Inhibit");
    switch (backend) {
        case InhibitionBackend::gnomeSessionManager:
            return message << application << std::uint32_t{0} << wish.reason << flags;
        case InhibitionBackend::kdePolicyAgent:
            return message << flags << application << wish.reason;
        case InhibitionBackend::portal:
            return message << QString() << flags
                           << QVariantMap{{QStringLiteral("reason"), wish.reason},
                                          {QStringLiteral("handle_token"), nextHandleToken()}};
        case InhibitionBackend::freedesktopPowerManagement:
        case InhibitionBackend::screenSaver:
            return message << application << wish.reason;
        case InhibitionBackend::logind:
            return message << (wish.displayAndSystem ? QStringLiteral("idle") : QStringLiteral("sleep"))
                           << application << wish.reason
                           << (weakest ? QStringLiteral("block-weak") : QStringLiteral("block"));
    }
    return message;
}

std::optional<InhibitionLock> lockFromReply(InhibitionBackend backend, const QDBusMessage& reply) {
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty()) {
        return std::nullopt;
    }
    const QVariant first = reply.arguments().constFirst();
    if (backend == InhibitionBackend::logind) {
        const auto descriptor = first.value<QDBusUnixFileDescriptor>();
        return descriptor.isValid() ? std::optional<InhibitionLock>(descriptor) : std::nullopt;
    }
    if (backend == InhibitionBackend::portal) {
        const auto path = first.value<QDBusObjectPath>();
        return path.path().isEmpty() ? std::nullopt : std::optional<InhibitionLock>(path);
    }
    return first.metaType().id() == QMetaType::UInt ? std::optional<InhibitionLock>(first.toUInt()) : std::nullopt;
}

std::optional<QDBusMessage> releaseCall(InhibitionBackend backend, const InhibitionLock& lock,
                                        const QString& grantedBy) {
    const auto& row = rowOf(backend);
    if (const auto* cookie = std::get_if<std::uint32_t>(&lock)) {
        return call(grantedBy, QString::fromLatin1(row.path), row.interface, row.release) << *cookie;
    }
    if (const auto* request = std::get_if<QDBusObjectPath>(&lock)) {
        return call(grantedBy, request->path(), "org.freedesktop.portal.Request", "Close");
    }
    return std::nullopt;
}

}  // namespace kestro
